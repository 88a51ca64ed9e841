// The activity log: plain text that the user can select and copy, with the marker of each line in its colour.
#pragma once

#include "app/log_record.h"

#include <QPlainTextEdit>
#include <vector>

namespace lumbrine {

// Scrolls to the newest line, unless the user has scrolled up: then the visible lines stay in place.
class LogView final : public QPlainTextEdit {
public:
    explicit LogView(QWidget* parent);

    void display(const std::vector<LogRow>& log);

    bool isFollowing() const;

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void dropFirst(std::size_t count);
    void dropFrom(std::size_t first);
    void add(const LogRow& row);
    void follow();

    std::vector<LogRow> rows; // on the screen
};

} // namespace lumbrine
