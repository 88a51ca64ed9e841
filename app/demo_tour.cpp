#include "app/demo_tour.h"

#include "remote/command_builder.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

namespace lumbrine {

namespace {

constexpr std::array phoneNames{"phone A  ", "phone B  "};
constexpr std::size_t phoneA = 0;
constexpr std::size_t phoneB = 1;
constexpr Duration pauseBetweenSteps = seconds(0.4);
constexpr Duration firstPatience = seconds(20); // while the receiver learns the session
constexpr Duration moveInterval = seconds(0.02);
constexpr int movesOfASweep = 12;

std::string fixed(double value, int decimals) {
    std::array<char, 32> digits{};
    std::snprintf(digits.data(), digits.size(), "%.*f", decimals, value);
    return digits.data();
}

Strip stripNumber(int number) {
    return *Strip::of(number - 1);
}

std::string onOff(bool on) {
    return on ? "on" : "off";
}

std::string lightText(remote::Light light) {
    return light == remote::Light::blinking ? "blinking" : onOff(light == remote::Light::on);
}

bool ledIsOn(const SimulatorSnapshot::Strip& strip, int port) {
    return (strip.leds >> port & 1) != 0;
}

} // namespace

DemoTour::DemoTour(Stage demoStage) : stage(std::move(demoStage)) {
    for (std::size_t i = 0; i < phoneNames.size(); ++i) {
        remote::RemoteOptions options;
        options.token = 0x1000 + i;
        phones.push_back(std::make_unique<remote::RemoteClient>(stage.runtime, stage.sockets, options));
        phones[i]->onMessage = [this, i](const remote::ReceiverMessage&) { look(i); };
        phones[i]->onState = [this, i](remote::LinkState) { look(i); };
    }
    plan();
}

DemoTour::~DemoTour() = default;

// ---- The programme

void DemoTour::plan() {
    steps.push_back({phoneA, "says hello and asks for everything",
                     [this](remote::RemoteClient& phone) { phone.connect("127.0.0.1", stage.receiverPort); },
                     [this]() -> std::optional<std::string> {
                         const remote::SessionPicture& picture = phones[phoneA]->picture();
                         const bool allNamed = std::ranges::none_of(
                             picture.strips, [](const remote::StripPicture& strip) { return strip.name.empty(); });
                         if (picture.shownStrips != stripCount || !allNamed || !stage.receiverIsReady())
                             return std::nullopt;
                         std::string names;
                         for (const remote::StripPicture& strip : picture.strips)
                             names += " " + strip.name;
                         return "16 strips:" + names;
                     },
                     false, firstPatience});
    planFader(phoneA, 3, 0.72);
    planFader(phoneA, 11, 0.35);
    const auto muteShown = [](const remote::StripPicture& strip) { return "mute " + lightText(strip.lights.mute); };
    const auto soloShown = [](const remote::StripPicture& strip) { return "solo " + onOff(strip.lights.solo); };
    const auto recordShown = [](const remote::StripPicture& strip) {
        return "record " + lightText(strip.lights.record);
    };
    const auto selectShown = [](const remote::StripPicture& strip) { return "select " + onOff(strip.select); };
    planPress(2, "mute", remote::mutePressCommand, muteShown, 2);
    planPress(5, "solo", remote::soloPressCommand, soloShown, 3);
    planPress(5, "solo", remote::soloPressCommand, soloShown, 3);
    planPress(12, "select", remote::selectPressCommand, selectShown, 1);
    planPress(1, "record", remote::recArmPressCommand, recordShown, 7);
    planVpot(2, 27);
    planHandOver();
    planFader(phoneB, 1, 0.5);
}

void DemoTour::planFader(std::size_t phone, int number, double value) {
    steps.push_back({phone,
                     "touches fader " + std::to_string(number) + ", moves it to " + fixed(value, 2) + ", lets go",
                     [this, number, value](remote::RemoteClient& client) {
                         client.touch(stripNumber(number));
                         sweep(number, value, movesOfASweep);
                     },
                     [this, phone, number, value]() -> std::optional<std::string> {
                         const FaderValue wanted = FaderValue::ofUnit(value);
                         const bool hostIsThere = hostStrip(number).fader == wanted && !hostStrip(number).touched;
                         if (!hostIsThere || phones[phone]->picture().at(stripNumber(number)).fader != wanted)
                             return std::nullopt;
                         stage.print("Pro Tools  fader of " + trackOn(number) + " at " + fixed(wanted.unit(), 3));
                         return "fader " + std::to_string(number) + " " + fixed(wanted.unit(), 3);
                     }});
}

void DemoTour::sweep(int number, double value, int movesLeft) {
    remote::RemoteClient& phone = *phones[steps[current].phone];
    const double start = hostStrip(number).fader.unit();
    const double share = 1.0 / movesLeft;
    phone.move(stripNumber(number), FaderValue::ofUnit(movesLeft == 1 ? value : start + (value - start) * share));
    if (movesLeft == 1) {
        phone.release(stripNumber(number));
        sentAt = stage.runtime.now();
        return;
    }
    stage.runtime.postMainAfter(moveInterval, [this, number, value, movesLeft] {
        if (!ended) sweep(number, value, movesLeft - 1);
    });
}

void DemoTour::planPress(int number, const std::string& what, Bytes (*press)(Strip),
                         std::function<std::string(const remote::StripPicture&)> shown, int port) {
    // The light before the press, told when the step begins.
    const auto before = std::make_shared<std::string>();
    const auto now = [this, number, shown = std::move(shown)] {
        return shown(phones[phoneA]->picture().at(stripNumber(number)));
    };
    steps.push_back({phoneA, "presses " + what + " " + std::to_string(number),
                     [before, now, press, number](remote::RemoteClient& client) {
                         *before = now();
                         client.send(press(stripNumber(number)));
                     },
                     [this, before, now, number, what, port]() -> std::optional<std::string> {
                         if (now() == *before) return std::nullopt;
                         stage.print("Pro Tools  " + what + " of " + trackOn(number) + " is " +
                                     onOff(ledIsOn(hostStrip(number), port)));
                         return "strip " + std::to_string(number) + ": " + now();
                     }});
}

void DemoTour::planVpot(int number, int clicks) {
    const auto before = std::make_shared<std::uint8_t>();
    const auto position = [this, number] {
        return phones[phoneA]->picture().at(stripNumber(number)).ring(remote::PanSide::left).position;
    };
    steps.push_back({phoneA, "turns V-Pot " + std::to_string(number) + " by " + std::to_string(clicks) + " clicks",
                     [before, position, number, clicks](remote::RemoteClient& client) {
                         *before = position();
                         client.send(remote::vpotDeltaCommand(stripNumber(number), static_cast<std::int8_t>(clicks)));
                     },
                     [this, before, position, number]() -> std::optional<std::string> {
                         if (position() == *before) return std::nullopt;
                         stage.print("Pro Tools  ring of " + trackOn(number) + " at " +
                                     std::to_string(hostStrip(number).ring & 0x0F));
                         return "pan " + std::to_string(number) + " from " + std::to_string(*before) + " to " +
                                std::to_string(position());
                     }});
}

void DemoTour::planHandOver() {
    const auto stateIs = [this](std::size_t phone, remote::LinkState state, const std::string& words) {
        return [this, phone, state, words]() -> std::optional<std::string> {
            if (phones[phone]->state() != state) return std::nullopt;
            return words;
        };
    };
    steps.push_back({phoneB, "says hello while phone A is in control",
                     [this](remote::RemoteClient& phone) { phone.connect("127.0.0.1", stage.receiverPort); },
                     stateIs(phoneB, remote::LinkState::busy, "busy: another device is in control")});
    steps.push_back({phoneB, "takes over", [](remote::RemoteClient& phone) { phone.takeOver(); },
                     stateIs(phoneB, remote::LinkState::connected, "in control now")});
    steps.push_back({phoneA, "presses mute 1, no longer in control",
                     [](remote::RemoteClient& phone) { phone.send(remote::mutePressCommand(stripNumber(1))); },
                     stateIs(phoneA, remote::LinkState::takenOver, "busy: another device has taken over")});
}

// ---- Running it

void DemoTour::start() {
    begin();
}

void DemoTour::begin() {
    const Step& step = steps[current];
    stage.print(std::string(phoneNames[step.phone]) + "→ " + step.says);
    waiting = true;
    sentAt = stage.runtime.now();
    stage.runtime.postMainAfter(step.patience, [this, number = current] { giveUp(number); });
    step.act(*phones[step.phone]);
}

void DemoTour::look(std::size_t phone) {
    if (ended || !waiting || steps[current].phone != phone) return;
    const auto answer = steps[current].answer();
    if (!answer) return;
    waiting = false;
    const double took = inSeconds(stage.runtime.now() - sentAt) * 1000;
    if (steps[current].timed) roundTrips.push_back(took);
    stage.print(std::string(phoneNames[phone]) + "← " + *answer +
                (steps[current].timed ? "   (" + fixed(took, 1) + " ms)" : ""));
    ++current;
    stage.runtime.postMainAfter(pauseBetweenSteps, [this] { next(); });
}

void DemoTour::next() {
    if (ended) return;
    if (current == steps.size()) {
        finish(true);
    } else {
        begin();
    }
}

void DemoTour::giveUp(std::size_t step) {
    if (ended || step != current || !waiting) return;
    stage.print("✗ no answer: " + std::string(phoneNames[steps[step].phone]) + steps[step].says);
    finish(false);
}

void DemoTour::finish(bool succeeded) {
    ended = true;
    if (!roundTrips.empty()) {
        std::ranges::sort(roundTrips);
        stage.print("Round trips through the receiver and the simulated Pro Tools (which answers after " +
                    fixed(inSeconds(stage.proTools.options.latency) * 1000, 0) + " ms): " +
                    std::to_string(roundTrips.size()) + ", median " + fixed(roundTrips[roundTrips.size() / 2], 1) +
                    " ms, longest " + fixed(roundTrips.back(), 1) + " ms");
    }
    stage.done(succeeded);
}

// ---- What the simulated Pro Tools shows on a strip, numbered as people do

SimulatorSnapshot::Strip DemoTour::hostStrip(int number) const {
    const SimulatorSnapshot shown = stage.proTools.snapshot();
    const Strip strip = stripNumber(number);
    return shown.surfaces.at(strip.surface() == SurfaceID::A ? 0 : 1)
        .strips[static_cast<std::size_t>(strip.engineStrip())];
}

std::string DemoTour::trackOn(int number) const {
    const SimulatedSession session = stage.proTools.session();
    const SimulatedTrack* track = session.find(hostStrip(number).trackID);
    return track != nullptr ? "\"" + track->name + "\"" : "no track";
}

} // namespace lumbrine
