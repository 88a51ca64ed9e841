// The channel strips as the surfaces show them, in one widget. Only strips that have changed are painted again.
#pragma once

#include "app/receiver_screen.h"

#include <QWidget>
#include <vector>

namespace lumbrine {

class StripsView final : public QWidget {
public:
    explicit StripsView(QWidget* parent);

    // `live` is true while Pro Tools is connected. Otherwise the strips are painted fainter.
    void display(const std::vector<StripView>& strips, bool live);

    int paintCount() const { return paints; } // the number of paint events so far

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool event(QEvent* event) override;

private:
    int columns() const; // in a narrow window, the second surface is below the first
    QRect placeOf(std::size_t strip) const;
    void describe();

    std::vector<StripView> shownStrips;
    bool shownLive = false;
    int paints = 0;
};

} // namespace lumbrine
