// The channel strips as the surfaces show them, painted by one widget: only what has changed is painted again.
#pragma once

#include "app/receiver_screen.h"

#include <QWidget>
#include <vector>

namespace lumbrine {

class StripsView final : public QWidget {
public:
    explicit StripsView(QWidget* parent);

    // `live`: Pro Tools shows them at this moment; else they stand back.
    void display(const std::vector<StripView>& strips, bool live);

    int paintCount() const { return paints; } // how often it has been painted

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool event(QEvent* event) override;

private:
    int columns() const; // a narrow window shows two surfaces one above the other
    QRect placeOf(std::size_t strip) const;
    void describe();

    std::vector<StripView> shownStrips;
    bool shownLive = false;
    int paints = 0;
};

} // namespace lumbrine
