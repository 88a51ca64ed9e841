// The activity log: plain text that can be selected and copied, each line's marker in its colour.
#pragma once

#include <QPlainTextEdit>
#include <string>
#include <vector>

namespace lumbrine {

// Follows the newest line, unless the user has scrolled up to read: then what is being read stays where it is.
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

    std::vector<std::string> lines; // as they are on the screen
};

} // namespace lumbrine
