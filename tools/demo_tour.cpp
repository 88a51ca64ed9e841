#include "tools/demo_tour.h"

#include <algorithm>
#include <utility>

namespace lumbrine {

namespace {

constexpr Duration pauseBetweenSteps = seconds(0.35);

} // namespace

DemoTour::DemoTour(DemoStage::Given given, std::function<void(bool succeeded)> done)
    : done(std::move(done)), stage(std::move(given)), steps(demoProgramme(stage)) {
    for (const std::size_t phone : {DemoStage::phoneA, DemoStage::phoneB}) {
        stage.phone(phone).onMessage = [this, phone](const remote::ReceiverMessage& message) {
            if (std::holds_alternative<remote::Fader>(message)) ++stage.fadersHeard;
            look(phone);
        };
        stage.phone(phone).onState = [this, phone](remote::LinkState) { look(phone); };
    }
}

void DemoTour::begin() {
    const DemoStep& step = steps[current];
    stage.tell(step.phone, "→ " + step.says);
    waiting = true;
    stage.noteAct();
    stage.after(step.patience, [this, number = current] { giveUp(number); });
    step.act();
}

void DemoTour::look(std::size_t phone) {
    if (ended || !waiting || steps[current].phone != phone) return;
    const DemoStep& step = steps[current];
    const auto answer = step.answer();
    if (!answer) return;
    waiting = false;
    const double took = inSeconds(stage.given.runtime.now() - stage.actedAt);
    if (step.isRoundTrip) roundTrips.push_back(took * 1000);
    stage.tell(phone,
               "← " + *answer +
                   (step.isRoundTrip ? "   (" + fixed(took * 1000, 1) + " ms)" : "   (" + fixed(took, 1) + " s)"));
    ++current;
    stage.after(pauseBetweenSteps, [this] { goOn(); });
}

void DemoTour::goOn() {
    if (ended) return;
    if (current == steps.size()) {
        finish(true);
    } else {
        begin();
    }
}

void DemoTour::giveUp(std::size_t step) {
    if (ended || step != current || !waiting) return;
    stage.tell(steps[step].phone, stage.given.text("✗ no answer", "✗ 応答がありません"));
    finish(false);
}

void DemoTour::finish(bool succeeded) {
    ended = true;
    if (!roundTrips.empty()) tellRoundTrips();
    done(succeeded);
}

void DemoTour::tellRoundTrips() {
    std::ranges::sort(roundTrips);
    const std::string latency = fixed(inSeconds(stage.given.proTools.options.latency) * 1000, 0);
    const std::string count = std::to_string(roundTrips.size());
    const std::string median = fixed(roundTrips[roundTrips.size() / 2], 1), longest = fixed(roundTrips.back(), 1);
    stage.given.print(
        stage.given.text("Round trips through the receiver and the simulated Pro Tools (which answers after " +
                             latency + " ms): " + count + ", median " + median + " ms, longest " + longest + " ms",
                         "レシーバーと模擬 Pro Tools（応答まで " + latency + " ms）を経由した往復: " + count +
                             " 回、中央値 " + median + " ms、最長 " + longest + " ms"));
}

} // namespace lumbrine
