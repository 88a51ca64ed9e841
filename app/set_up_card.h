// The card that leads through the first set-up: what is done, and what to do next. It is there from the start until
// everything has worked once, and comes back when something breaks and stays broken.
#pragma once

#include "app/diagnosis.h"
#include "platform/api/runtime.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace lumbrine {

struct SetUpRow {
    CheckState state;
    std::string text;
    std::string spoken;      // for screen readers: "Done: …"
    std::string advice = {}; // what to do; only one row has it: the first with a fault, else the first to do

    bool operator==(const SetUpRow&) const = default;
};

struct SetUpCard {
    bool shown = false;
    std::string title = {};
    std::vector<SetUpRow> rows = {}; // four

    bool operator==(const SetUpCard&) const = default;
};

// The card's contents, while it is shown.
SetUpCard setUpCard(const PublishedState& published, HostSystem system, const Bilingual& text);

// Decides when the card is shown. Main thread.
class SetUpWatch {
public:
    static constexpr Duration patience = seconds(10); // a break that ends sooner does not bring the card back

    // `appeared` is called when the card comes back, some time after the change that broke something.
    SetUpWatch(Runtime& runtime, std::function<void()> appeared);

    // To be called after each change of the state. Cheap.
    void look(const PublishedState& published);

    bool showsCard() const { return isShown; }

private:
    Runtime& runtime;
    const std::function<void()> appeared;
    bool isShown = true;
    bool wasComplete = false; // everything has worked once, with a phone
    bool isBroken = false;
    unsigned breaks = 0; // the number of the current one, for its timer
    const std::shared_ptr<const int> life = std::make_shared<int>(0);
};

} // namespace lumbrine
