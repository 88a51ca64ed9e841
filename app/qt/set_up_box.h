// The card of the first set-up in the window: four rows with a mark each, and what to do next.
#pragma once

#include "app/qt/status_rows.h"
#include "app/set_up_card.h"

#include <array>

namespace lumbrine {

class SetUpBox final : public Card {
public:
    explicit SetUpBox(QWidget* parent);

    void display(const SetUpCard& card);

protected:
    void changeEvent(QEvent* event) override;

private:
    struct Row {
        QLabel* mark;
        QLabel* text;
        QLabel* advice; // below the text
    };

    void tint();

    QLabel* const title;
    std::array<Row, 4> rows{};
    SetUpCard drawn;
};

} // namespace lumbrine
