#include "simulator/simulated_hui_host.h"

#include <algorithm>
#include <utility>

namespace lumbrine {

namespace {

constexpr int clip = 12; // the meter level for clipping

} // namespace

SimulatedHUIHost::SimulatedHUIHost(const SimulatorOptions& options, SimulatedSession& session)
    : options(options), session(session), groups(session, options.groups),
      automation(session, [this](AutomationKeys::Strip strip) { return trackOn(strip.surface, strip.number); }),
      flasher(options.ledOn, options.ledOff), chance(options.seed) {
    // Each surface gets its own random sequence, so that what one does cannot change what happens to the other.
    for (int surface = 0; surface < options.surfaces; ++surface)
        surfaces.push_back(
            std::make_unique<Surface>(options, options.seed * 4 + 2 * static_cast<std::uint64_t>(surface)));
    session.onChange([this](const SessionChange& change) { noteChange(change); });
}

void SimulatedHUIHost::receive(int surface, ByteView bytes, TimePoint now) {
    // First whatever was due before these bytes came: a ping's time-out may have given the surface up.
    advance(now);
    if (!holdsPorts || at(surface).port.cut()) return;
    at(surface).decoder.feed(bytes, [&](const SurfaceMessage& message) {
        if (frozenAgainst(message)) return;
        std::visit([&](const auto& decoded) { act(surface, decoded, now); }, message);
        show(now);
    });
}

void SimulatedHUIHost::advance(TimePoint now) {
    advanceClock(now);
    advancePorts(now);
    show(now);
    advanceMeters(now);
}

void SimulatedHUIHost::advanceClock(TimePoint now) {
    if (clock) session.elapse(now - *clock);
    clock = now;
    const std::size_t expired = std::erase_if(modeShownUntil, [now](const auto& shown) { return now >= shown.second; });
    const std::size_t values =
        std::erase_if(valuesShown, [now](const auto& shown) { return now >= shown.second.until; });
    if (expired + values > 0) needsShowing = true;
}

void SimulatedHUIHost::advancePorts(TimePoint now) {
    const bool pinging =
        holdsPorts && (!dialog || options.pingInDialog) && (session.isOpen() || options.pingWithoutSession);
    for (int surface = 0; surface < options.surfaces; ++surface) {
        if (!at(surface).port.advance(now, pinging)) continue;
        // The surface was given up. No release will come for what was held on it, and the bank may become narrower.
        letGoOfEverything(surface);
        moveTo(bankOffset);
    }
}

void SimulatedHUIHost::advanceMeters(TimePoint now) {
    if (!session.transport().playing) {
        if (nextMeters) sendMeters(); // once more, at level 0
        nextMeters.reset();
        return;
    }
    const Duration period = seconds(1.0 / options.meterRate);
    if (!nextMeters) {
        nextMeters = now + period;
        clipped.clear();
    }
    if (now < *nextMeters) return;
    // Keep to the grid of the period: after a delay the missed meters are skipped, not sent in a burst.
    while (*nextMeters <= now)
        *nextMeters += period;
    sendMeters();
    needsShowing = true; // the counter has changed
    show(now);
}

void SimulatedHUIHost::sendMeters() {
    for (int surface = 0; surface < options.surfaces; ++surface)
        at(surface).port.showMeters(metersOf(surface));
    collect();
}

HUISurfaceHost::Meters SimulatedHUIHost::metersOf(int surface) {
    const SimulatedTransport& transport = session.transport();
    HUISurfaceHost::Meters meters{};
    if (!transport.playing || dialog) return meters;
    for (int strip = 0; strip < hui_address::stripCountOfSurface; ++strip) {
        const SimulatedTrack* track = session.find(trackOn(surface, strip));
        if (track == nullptr || track->mute || session.impliedMute(*track)) continue;
        MeterLevels& levels = meters[static_cast<std::size_t>(strip)];
        levels = meterLevels(track->meter, track->stereo, transport.position);
        for (int side = 0; side < 2 && options.clipHolds; ++side) {
            int& level = levels[static_cast<std::size_t>(side)];
            // With the option clipHolds, a meter that has clipped stays at the clip level until playback starts again.
            if (level == clip) clipped.emplace(track->id, side);
            if (clipped.contains({track->id, side})) level = clip;
        }
    }
    return meters;
}

// Marks the current picture as shown without sending it.
void SimulatedHUIHost::believeShown(int surface) {
    collect();
    at(surface).port.show(picture(surface));
    at(surface).port.take();
}

TimePoint SimulatedHUIHost::nextDeadline() const {
    TimePoint deadline = std::min(flasher.nextDeadline(), nextMeters.value_or(TimePoint::max()));
    for (const auto& surface : surfaces)
        deadline = std::min(deadline, surface->port.nextDeadline());
    for (const auto& [track, until] : modeShownUntil)
        deadline = std::min(deadline, until);
    for (const auto& [track, value] : valuesShown)
        deadline = std::min(deadline, value.until);
    return deadline;
}

std::vector<SimulatedHUIHost::Outgoing> SimulatedHUIHost::takeOutgoing() {
    std::vector<Outgoing> packets;
    for (int surface = 0; surface < options.surfaces; ++surface) {
        std::vector<Bytes> messages;
        for (Outgoing& sent : outgoing)
            if (sent.surface == surface) messages.push_back(std::move(sent.packet));
        for (Bytes& packet : at(surface).packets.packetsOf(std::move(messages)))
            packets.push_back({surface, std::move(packet)});
    }
    outgoing.clear();
    return packets;
}

void SimulatedHUIHost::collect() {
    for (int surface = 0; surface < options.surfaces; ++surface)
        for (Bytes& packet : at(surface).port.take())
            outgoing.push_back({surface, std::move(packet)});
}

void SimulatedHUIHost::show(TimePoint now) {
    // A changed automation mode takes the place of the track's name on the display for a moment.
    for (const int track : std::exchange(pendingModes, {}))
        if (options.modeShown > Duration::zero()) modeShownUntil[track] = now + options.modeShown;
    if (flasher.advance(now, somethingFlashes())) needsShowing = true;

    if (std::exchange(needsShowing, false)) {
        recordBank();
        for (int surface = 0; surface < options.surfaces; ++surface) {
            HUISurfaceHost& port = at(surface).port;
            if (!port.answering()) continue;
            const SurfacePicture shown = picture(surface);
            port.show(shown);
            if (!port.cut()) recordShown(surface, shown);
        }
    }
    collect();
}

void SimulatedHUIHost::bank(BankButton button) {
    const int tracks = static_cast<int>(session.shownTracks().size());
    moveTo(bankOffsetAfter(button, bankOffset, tracks, width(), options));
}

void SimulatedHUIHost::scrollTo(int newOffset) {
    moveTo(newOffset);
}

void SimulatedHUIHost::moveTo(int newOffset) {
    const int tracks = static_cast<int>(session.shownTracks().size());
    newOffset = std::clamp(newOffset, 0, lastBankOffset(tracks, width(), options.endOfSession));
    needsShowing = true;
    if (newOffset == bankOffset) return;
    bankOffset = newOffset;
    // With redrawOnBank the strips are sent in full after a bank move, even where the new track looks the same.
    if (!options.redrawOnBank) return;
    for (const auto& surface : surfaces)
        surface->port.forgetStrips();
}

void SimulatedHUIHost::setDialog(const std::optional<std::string>& text) {
    const std::optional<std::string> shown = options.dialogFreezes ? text : std::nullopt;
    if (shown == dialog) return;
    // While the dialog is open the surfaces go on showing what they showed when it opened.
    if (!dialog)
        for (int surface = 0; surface < options.surfaces; ++surface)
            frozen.push_back(picture(surface));
    dialog = shown;
    if (!dialog) frozen.clear();
    needsShowing = true;
}

void SimulatedHUIHost::cut(int surface, bool cutOff) {
    if (cutOff == at(surface).port.cut()) return;
    if (cutOff) loseSysEx(surface);
    at(surface).port.setCut(cutOff);
    // A message that was interrupted by the cut never gets its rest.
    at(surface).decoder.forget();
    needsShowing = true;
}

void SimulatedHUIHost::holdPorts(bool held) {
    if (held == holdsPorts) return;
    holdsPorts = held;
    for (int surface = 0; surface < options.surfaces; ++surface) {
        if (!held) loseSysEx(surface);
        at(surface).port.giveUp();
        at(surface).decoder.forget();
        letGoOfEverything(surface);
    }
    moveTo(bankOffset);
}

// With the option cutSysEx, a connection that breaks cuts a SysEx message short: its start arrives, its F7 never does.
void SimulatedHUIHost::loseSysEx(int surface) {
    if (!options.packets.cutSysEx || !at(surface).port.answering() || at(surface).port.cut()) return;
    outgoing.push_back({surface, PacketMaker::cutSysEx()});
}

int SimulatedHUIHost::answeringCount() const {
    return static_cast<int>(
        std::ranges::count_if(surfaces, [](const auto& surface) { return surface->port.answering(); }));
}

// The strips of one bank: those of all configured surfaces, or only of the surfaces that answer pings.
int SimulatedHUIHost::width() const {
    const int counted = options.bankWidth == BankWidth::configured ? options.surfaces : std::max(answeringCount(), 1);
    return counted * hui_address::stripCountOfSurface;
}

// The position of the surface's first strip within the bank.
int SimulatedHUIHost::baseOf(int surface) const {
    int before = surface;
    if (options.bankWidth == BankWidth::answering && at(surface).port.answering())
        before = static_cast<int>(std::count_if(surfaces.begin(), surfaces.begin() + surface,
                                                [](const auto& other) { return other->port.answering(); }));
    return before * hui_address::stripCountOfSurface;
}

int SimulatedHUIHost::trackOn(int surface, int strip) const {
    const std::vector<int>& shown = session.shownTracks();
    const auto index = static_cast<std::size_t>(bankOffset) + static_cast<std::size_t>(baseOf(surface) + strip);
    return index < shown.size() ? shown[index] : 0;
}

bool SimulatedHUIHost::isTouched(int surface, int strip) const {
    return at(surface).touchedTrack[static_cast<std::size_t>(strip)] != 0;
}

bool SimulatedHUIHost::isAutoHeld(int surface, int strip) const {
    return automation.isHeld({surface, strip});
}

bool SimulatedHUIHost::showsRightPan(int surface) const {
    return at(surface).rightPan;
}

void SimulatedHUIHost::noteChange(const SessionChange& change) {
    if (recorder != nullptr) recorder->change(change);
    needsShowing = true;
    switch (change.kind) {
    case SessionChange::Kind::automation:
        pendingModes.push_back(change.trackID);
        break;
    case SessionChange::Kind::structure:
    case SessionChange::Kind::closed: {
        const int tracks = static_cast<int>(session.shownTracks().size());
        bankOffset = std::clamp(bankOffset, 0, lastBankOffset(tracks, width(), options.endOfSession));
        break;
    }
    case SessionChange::Kind::opened:
        // A session that opens is sent in full, as after a connection.
        for (const auto& surface : surfaces)
            surface->port.forget();
        break;
    case SessionChange::Kind::values:
    case SessionChange::Kind::transport:
        break;
    }
}

} // namespace lumbrine
