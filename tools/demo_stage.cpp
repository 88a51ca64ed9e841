#include "tools/demo_stage.h"

#include <cstdio>
#include <utility>

namespace lumbrine {

namespace {

constexpr std::uint64_t firstToken = 0x1000;
constexpr Duration moveInterval = seconds(0.02);
constexpr int movesOfASweep = 12;

} // namespace

Strip stripNumber(int number) {
    return *Strip::of(number - 1);
}

std::string fixed(double value, int decimals) {
    std::array<char, 32> digits{};
    std::snprintf(digits.data(), digits.size(), "%.*f", decimals, value);
    return digits.data();
}

DemoStage::DemoStage(Given given) : given(std::move(given)) {
    for (std::size_t i = 0; i < phones.size(); ++i) {
        remote::RemoteOptions options;
        options.token = firstToken + i;
        phones[i] = std::make_unique<remote::RemoteClient>(this->given.runtime, this->given.sockets, options);
    }
}

// ---- The phones

const remote::StripPicture& DemoStage::shownTo(std::size_t which, int strip) const {
    return picture(which).at(stripNumber(strip));
}

std::optional<FaderValue> DemoStage::rowFader(int track) const {
    const auto& session = picture(phoneA).session;
    const auto heard = session.find(static_cast<std::uint16_t>(track - 1));
    return heard != session.end() && heard->second.row ? heard->second.row->fader : std::nullopt;
}

void DemoStage::sweep(std::size_t which, int strip, double value) {
    phone(which).touch(stripNumber(strip));
    moveOn(which, strip, value, movesOfASweep);
}

void DemoStage::moveOn(std::size_t which, int strip, double value, int movesLeft) {
    const double from = shownTo(which, strip).fader.unit();
    phone(which).move(stripNumber(strip), FaderValue::ofUnit(from + (value - from) / movesLeft));
    if (movesLeft == 1) {
        phone(which).release(stripNumber(strip));
        noteAct();
        return;
    }
    after(moveInterval, [this, which, strip, value, movesLeft] { moveOn(which, strip, value, movesLeft - 1); });
}

// ---- The simulated Pro Tools

SimulatorSnapshot::Strip DemoStage::hostStrip(int strip) const {
    const SimulatorSnapshot shown = given.proTools.snapshot();
    const Strip where = stripNumber(strip);
    return shown.surfaces.at(where.surface() == SurfaceID::A ? 0 : 1)
        .strips[static_cast<std::size_t>(where.engineStrip())];
}

SimulatedTrack DemoStage::track(int number) const {
    const SimulatedSession session = given.proTools.session();
    return *session.find(session.shownTracks().at(static_cast<std::size_t>(number - 1)));
}

std::string DemoStage::trackOn(int strip) const {
    const SimulatedSession session = given.proTools.session();
    const SimulatedTrack* track = session.find(hostStrip(strip).trackID);
    if (track == nullptr) return given.text("no track", "トラックなし");
    return given.text("\"" + track->name + "\"", "「" + track->name + "」");
}

// ---- Telling

void DemoStage::tell(std::size_t which, const std::string& what) const {
    const std::string name(1, static_cast<char>('A' + which));
    given.print(given.text("phone " + name + "  ", "端末 " + name + "   ") + what);
}

void DemoStage::tellOfProTools(const std::string& what) const {
    given.print("Pro Tools  " + what);
}

} // namespace lumbrine
