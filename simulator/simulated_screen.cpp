#include "simulator/simulated_screen.h"

#include "simulator/screen_texts.h"

#include <algorithm>
#include <utility>

namespace lumbrine {

namespace {

using Kind = ScreenElement::Kind;
using Elements = std::vector<ScreenElement>;

std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines)
        text += (text.empty() ? "" : " ") + line;
    return text;
}

std::string inQuotes(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

} // namespace

SimulatedScreen::SimulatedScreen(const ScreenOptions& options, const SimulatedSession& session,
                                 std::function<void(TimePoint)> apply)
    : options(options), session(session), apply(std::move(apply)) {}

// ---- Tracks

Elements SimulatedScreen::listRows() const {
    Elements rows;
    if (options.hiddenTracksListed) {
        for (const SimulatedTrack& track : session.tracks())
            rows.push_back({Kind::trackRow, track.id});
    } else {
        for (const int id : session.shownTracks())
            rows.push_back({Kind::trackRow, id});
    }
    return rows;
}

std::string SimulatedScreen::listedName(int trackID) const {
    const std::string& name = session.find(trackID)->name;
    if (options.numbers == NameNumbers::none) return name;
    const Elements rows = listRows();
    const auto place = std::ranges::find(rows, trackID, &ScreenElement::number) - rows.begin() + 1;
    return std::to_string(place) + (options.numbers == NameNumbers::fullStop ? ". " : "。 ") + name;
}

Elements SimulatedScreen::strips() const {
    const auto& shown = session.shownTracks();
    const auto first = std::min(static_cast<std::size_t>(firstStripInSight), shown.size());
    const auto count = std::min(static_cast<std::size_t>(options.mixStrips), shown.size() - first);
    Elements inSight;
    for (std::size_t i = first; i < first + count; ++i)
        inSight.push_back({Kind::strip, shown[i]});
    return inSight;
}

bool SimulatedScreen::stripInSight(int trackID) const {
    const auto& shown = session.shownTracks();
    const auto place = std::ranges::find(shown, trackID) - shown.begin();
    return place < std::ssize(shown) && place >= firstStripInSight && place - firstStripInSight < options.mixStrips;
}

const SimulatedScreen::Alert* SimulatedScreen::findAlert(int number) const {
    const auto found = std::ranges::find(alerts, number, &Alert::number);
    return found == alerts.end() ? nullptr : &*found;
}

// ---- Pressing

std::optional<std::string> SimulatedScreen::press(const ScreenElement& element, TimePoint now) {
    if (!isThere(element, now)) return std::nullopt;
    switch (element.kind) {
    case Kind::menuItem:
        if (element.number == setupMenu && element.part == peripheralsItem) openPeripherals(now);
        return "menu item " + inQuotes(*title(element)) + " chosen";
    case Kind::tab:
        openTab = element.part;
        return "tab " + inQuotes(*title(element)) + " chosen";
    case Kind::dialogButton:
        return pressDialogButton(element.part, now);
    case Kind::alertButton: {
        const std::string told = joined(findAlert(element.number)->lines);
        std::erase_if(alerts, [&](const Alert& alert) { return alert.number == element.number; });
        return "OK pressed: the alert " + inQuotes(told) + " is gone";
    }
    default:
        return std::nullopt;
    }
}

std::string SimulatedScreen::pressDialogButton(int button, TimePoint now) {
    opensAt = TimePoint::max();
    if (button == cancelButton) return "the Peripherals dialog is closed and changes nothing";
    apply(now);
    return "OK pressed: the Peripherals dialog is closed, the MIDI ports are taken";
}

// ---- The user

void SimulatedScreen::openPeripherals(TimePoint now) {
    if (!options.dialogOpens || opensAt != TimePoint::max()) return;
    opensAt = now + options.dialogOpensAfter;
    ++opening;
    openTab = synchronizationTab;
}

void SimulatedScreen::showAlert(std::vector<std::string> lines) {
    alerts.push_back({++alertsSoFar, std::move(lines), false});
}

void SimulatedScreen::showDialog(std::vector<std::string> lines) {
    alerts.push_back({++alertsSoFar, std::move(lines), true});
}

void SimulatedScreen::closeDialogs() {
    std::erase_if(alerts, [](const Alert& alert) { return alert.modal; });
}

std::optional<std::string> SimulatedScreen::dialogText() const {
    const auto front = std::find_if(alerts.rbegin(), alerts.rend(), [](const Alert& alert) { return alert.modal; });
    return front == alerts.rend() ? std::nullopt : std::optional(joined(front->lines));
}

void SimulatedScreen::showWindows(bool edit, bool mix) {
    editShown = edit;
    mixShown = mix;
}

void SimulatedScreen::scrollMix(int firstStrip) {
    firstStripInSight = std::max(firstStrip, 0);
}

void SimulatedScreen::rest() {
    alerts.clear();
    opensAt = TimePoint::max();
    showWindows(true, true);
    scrollMix(0);
}

} // namespace lumbrine
