// The activity log: plain text that the user can select and copy, with the marker of each line in its colour.
#pragma once

#include <QPlainTextEdit>
#include <string>
#include <vector>

namespace lumbrine {

// Scrolls to the newest line, unless the user has scrolled up: then the visible lines stay in place.
class LogView final : public QPlainTextEdit {
public:
    explicit LogView(QWidget* parent);

    void display(const std::vector<std::string>& log);

    bool isFollowing() const;

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void dropLines(std::size_t count);
    void addLine(const std::string& line);
    void follow();

    std::vector<std::string> lines; // the lines on the screen
};

} // namespace lumbrine
