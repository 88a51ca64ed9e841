// The channel strips as the surfaces show them, in one widget. Only strips that have changed are painted again. With
// the keyboard focus, arrow keys go from strip to strip, and a screen reader reads the current one.
#pragma once

#include "app/receiver_screen.h"

#include <QWidget>
#include <algorithm>
#include <vector>

namespace lumbrine {

class StripsView final : public QWidget {
public:
    explicit StripsView(QWidget* parent);

    // `live` is true while Pro Tools is connected. Otherwise the strips are painted fainter.
    void display(const std::vector<StripView>& strips, bool live);

    int paintCount() const { return paints; } // the number of paint events so far

    int count() const { return static_cast<int>(shownStrips.size()); }
    int current() const { return std::min(currentStrip, count() - 1); }
    const StripView& strip(int number) const { return shownStrips[static_cast<std::size_t>(number)]; }
    QRect placeOf(std::size_t strip) const;

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool event(QEvent* event) override;

private:
    int columns() const; // where names would be cut, the second surface is below the first
    void makeCurrent(int strip);

    std::vector<StripView> shownStrips;
    bool shownLive = false;
    int currentStrip = 0;
    int paints = 0;
};

} // namespace lumbrine
