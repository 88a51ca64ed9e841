#include "simulator/simulated_pro_tools.h"

#include <algorithm>
#include <utility>

namespace lumbrine {

namespace {

const std::vector<std::string> lostHUI{"Lost communication with", "HUI"};

} // namespace

SimulatedProTools::SimulatedProTools(Runtime& runtime, MIDIConnections& connections, const SimulatorOptions& options,
                                     const SimulatedSession& initialSession)
    : options(options), runtime(runtime), mutex(runtime), theSession(initialSession), host(options, theSession),
      user(theSession, host, options.restlessUserEvery, options.seed),
      theScreen(options.screen, theSession,
                [this](TimePoint now) LUMBRINE_NO_THREAD_SAFETY_ANALYSIS { grabsPortsAt = now; }),
      grabsPortsAt(options.portsLost ? TimePoint::max() : runtime.now() + options.grabPortsAfter),
      queue(runtime.serialQueue("simulated Pro Tools", Priority::userInitiated)),
      scriptingService(
          runtime, options.scripting, options.seed,
          [this](const std::function<void(SimulatedSession&)>& body) { edit(body); },
          [this](std::int32_t command, bool enabled, int track) LUMBRINE_NO_THREAD_SAFETY_ANALYSIS {
              if (recorder) recorder->wish(command, enabled, track);
          },
          [this] {
              Lock lock(mutex);
              return ProgramState{stuckUntil, theScreen.dialogText().has_value(), inProgressUntil};
          }),
      screenAccess(
          runtime, options.screen, options.seed, [this](const auto& body) { lookAtScreen(body); },
          [this](const auto& body) { actOnScreen(body); }) {
    if (options.keepsRecord) host.recordTo(recorder.emplace(runtime, theSession));
    if (!options.opensSession) theSession.close();
    if (options.portsLost) theScreen.showAlert(lostHUI);
    for (int surface = 0; surface < options.surfaces; ++surface) {
        const auto index = static_cast<std::size_t>(surface);
        ports[index] =
            connections.connect(options.portNames[index], [this, surface](ByteView bytes) { arrived(surface, bytes); });
    }
    {
        Lock lock(mutex);
        portsAreMade = true;
    }
    // The second wake-up is for packets that have already arrived.
    queue->post([this] { wake(); });
    queue->postAfter(options.latency, [this] { wake(); });
}

SimulatedProTools::~SimulatedProTools() {
    scriptingService.end();
    {
        Lock lock(mutex);
        ending = true;
    }
    queue.reset();
}

void SimulatedProTools::arrived(int surface, ByteView bytes) {
    Lock lock(mutex);
    if (ending) return;
    const TimePoint now = runtime.now();
    const auto index = static_cast<std::size_t>(surface);
    ++packetCount[index];
    if (log[index].size() == options.logLimit && !log[index].empty()) log[index].pop_front();
    if (options.logLimit > 0) log[index].push_back({now, Bytes(bytes.begin(), bytes.end())});
    inbox.push_back({now, now + options.latency, surface, Bytes(bytes.begin(), bytes.end())});
    if (portsAreMade) queue->postAfter(options.latency, [this] { wake(); });
}

void SimulatedProTools::change(const std::function<void(TimePoint)>& body) {
    bool dialogHasGone = false;
    {
        Lock lock(mutex);
        const TimePoint now = runtime.now();
        if (now >= stuckUntil) runUntilNow(now);
        const bool dialogBefore = theScreen.dialogText().has_value();
        body(now);
        dialogHasGone = dialogBefore && !theScreen.dialogText();
    }
    queue->post([this] { wake(); });
    if (dialogHasGone) scriptingService.dialogClosed();
}

void SimulatedProTools::edit(const std::function<void(SimulatedSession&)>& body) {
    change([&](TimePoint) LUMBRINE_NO_THREAD_SAFETY_ANALYSIS { body(theSession); });
}

void SimulatedProTools::bank(BankButton button) {
    change([&](TimePoint) LUMBRINE_NO_THREAD_SAFETY_ANALYSIS { host.bank(button); });
}

void SimulatedProTools::scrollTo(int offset) {
    change([&](TimePoint) LUMBRINE_NO_THREAD_SAFETY_ANALYSIS { host.scrollTo(offset); });
}

void SimulatedProTools::exchangeSession(const SimulatedSession& next) {
    change([&](TimePoint now) LUMBRINE_NO_THREAD_SAFETY_ANALYSIS {
        theSession.close();
        nextSession.emplace(next);
        inProgressUntil = now + options.sessionOpensAfter;
    });
}

void SimulatedProTools::saveSession(Duration duration) {
    change([&](TimePoint now) LUMBRINE_NO_THREAD_SAFETY_ANALYSIS { inProgressUntil = now + duration; });
}

void SimulatedProTools::openDialog(const std::string& text) {
    change([&](TimePoint) LUMBRINE_NO_THREAD_SAFETY_ANALYSIS { theScreen.showDialog({text}); });
}

void SimulatedProTools::closeDialog() {
    change([&](TimePoint) LUMBRINE_NO_THREAD_SAFETY_ANALYSIS { theScreen.closeDialogs(); });
}

void SimulatedProTools::silence(int surface, Duration duration) {
    change([&](TimePoint now)
               LUMBRINE_NO_THREAD_SAFETY_ANALYSIS { silentUntil[static_cast<std::size_t>(surface)] = now + duration; });
}

void SimulatedProTools::stick(Duration duration) {
    change([&](TimePoint now) LUMBRINE_NO_THREAD_SAFETY_ANALYSIS { stuckUntil = now + duration; });
}

void SimulatedProTools::releasePorts() {
    change([&](TimePoint) LUMBRINE_NO_THREAD_SAFETY_ANALYSIS {
        grabsPortsAt = TimePoint::max();
        theScreen.showAlert(lostHUI);
    });
}

void SimulatedProTools::grabPorts() {
    change([&](TimePoint now) LUMBRINE_NO_THREAD_SAFETY_ANALYSIS { grabsPortsAt = now; });
}

void SimulatedProTools::rest() {
    change([&](TimePoint now) LUMBRINE_NO_THREAD_SAFETY_ANALYSIS {
        user.rest();
        host.seeEveryPress();
        host.letGoOfModeButtons();
        silentUntil.fill(distantPast);
        stuckUntil = distantPast;
        grabsPortsAt = std::min(grabsPortsAt, now);
        inProgressUntil = std::min(inProgressUntil, now);
        theScreen.rest();
    });
    scriptingService.rest();
    screenAccess.rest();
}

void SimulatedProTools::arrangeScreen(const std::function<void(SimulatedScreen&, TimePoint)>& arrange) {
    change([&](TimePoint now) LUMBRINE_NO_THREAD_SAFETY_ANALYSIS { arrange(theScreen, now); });
}

void SimulatedProTools::lookAtScreen(const std::function<void(SimulatedScreen&, TimePoint)>& body) {
    const Lock lock(mutex);
    const TimePoint now = runtime.now();
    if (now >= stuckUntil) body(theScreen, now);
}

void SimulatedProTools::actOnScreen(const std::function<void(SimulatedScreen&, TimePoint)>& body) {
    change([&](TimePoint now) LUMBRINE_NO_THREAD_SAFETY_ANALYSIS {
        if (now >= stuckUntil) body(theScreen, now);
    });
}

void SimulatedProTools::wake() {
    std::vector<SimulatedHUIHost::Outgoing> outgoing;
    {
        Lock lock(mutex);
        if (ending) return;
        const TimePoint now = runtime.now();
        if (now >= nextWake) nextWake = TimePoint::max();
        if (now >= stuckUntil) runUntilNow(now);
        outgoing = host.takeOutgoing();
        const TimePoint deadline = nextDeadline(now);
        if (deadline < nextWake) {
            nextWake = deadline;
            queue->postAfter(std::max(deadline - now, Duration::zero()), [this] { wake(); });
        }
    }
    for (const auto& [surface, packet] : outgoing)
        if (const auto& port = ports[static_cast<std::size_t>(surface)]) port->send(packet);
}

void SimulatedProTools::runUntilNow(TimePoint now) {
    applyFaults(now);
    openNextSession(now);
    while (!inbox.empty() && inbox.front().due <= now) {
        const Incoming next = std::move(inbox.front());
        inbox.pop_front();
        if (recorder) recorder->messagesLeft(next.sent);
        host.receive(next.surface, next.bytes, now);
    }
    user.advance(now);
    host.advance(now);
}

void SimulatedProTools::openNextSession(TimePoint now) {
    if (!nextSession || now < inProgressUntil) return;
    theSession.exchange(*nextSession);
    nextSession.reset();
}

void SimulatedProTools::applyFaults(TimePoint now) {
    host.setDialog(theScreen.dialogText());
    host.holdPorts(now >= grabsPortsAt);
    for (int surface = 0; surface < options.surfaces; ++surface)
        host.cut(surface, now < silentUntil[static_cast<std::size_t>(surface)]);
}

TimePoint SimulatedProTools::nextDeadline(TimePoint now) const {
    if (now < stuckUntil) return stuckUntil;
    TimePoint deadline = std::min(host.nextDeadline(), user.nextDeadline());
    if (grabsPortsAt > now) deadline = std::min(deadline, grabsPortsAt);
    if (nextSession) deadline = std::min(deadline, inProgressUntil);
    for (const TimePoint silent : silentUntil)
        if (silent > now) deadline = std::min(deadline, silent);
    return deadline;
}

SimulatedSession SimulatedProTools::session() const {
    Lock lock(mutex);
    return theSession;
}

std::vector<ReceivedPacket> SimulatedProTools::received(int surface) const {
    Lock lock(mutex);
    const auto& packets = log[static_cast<std::size_t>(surface)];
    return {packets.begin(), packets.end()};
}

HostRecord SimulatedProTools::takeRecord() {
    Lock lock(mutex);
    return recorder ? recorder->take() : HostRecord{};
}

SimulatorSnapshot SimulatedProTools::snapshot() const {
    SimulatorSnapshot snapshot;
    snapshot.at = runtime.now();
    snapshot.scriptingPort = scriptingService.port();
    std::array<bool, 2> connected{};
    for (std::size_t i = 0; i < ports.size(); ++i)
        connected[i] = ports[i] != nullptr && ports[i]->connected();

    Lock lock(mutex);
    snapshot.offset = host.offset();
    snapshot.width = host.width();
    snapshot.shownTracks = static_cast<int>(theSession.shownTracks().size());
    snapshot.sessionOpen = theSession.isOpen();
    snapshot.dialogOpen = theScreen.dialogText().has_value();
    snapshot.transport = theSession.transport();
    snapshot.droppedPresses = host.droppedPresses();
    for (int surface = 0; surface < options.surfaces; ++surface) {
        const auto index = static_cast<std::size_t>(surface);
        SimulatorSnapshot::Surface seen;
        seen.connected = connected[index];
        seen.answering = host.port(surface).answering();
        seen.showsRightPan = host.showsRightPan(surface);
        seen.pingsSent = host.port(surface).pingsSent();
        seen.packetsReceived = packetCount[index];
        const SurfacePicture picture = host.picture(surface);
        for (int strip = 0; strip < hui_address::stripCountOfSurface; ++strip)
            seen.strips[static_cast<std::size_t>(strip)] = stripNow(picture, surface, strip);
        snapshot.surfaces.push_back(seen);
    }
    return snapshot;
}

SimulatorSnapshot::Strip SimulatedProTools::stripNow(const SurfacePicture& picture, int surface, int strip) const {
    const auto index = static_cast<std::size_t>(strip);
    SimulatorSnapshot::Strip seen;
    seen.trackID = host.trackOn(surface, strip);
    seen.display.assign(picture.displays[index].begin(), picture.displays[index].end());
    if (const SimulatedTrack* track = theSession.find(seen.trackID)) seen.fader = track->fader;
    seen.ring = picture.rings[index];
    for (int port = 0; port < hui_address::portCount; ++port)
        if (picture.leds[ledIndex(strip, port)]) seen.leds = static_cast<std::uint8_t>(seen.leds | 1 << port);
    seen.touched = host.isTouched(surface, strip);
    seen.autoHeld = host.isAutoHeld(surface, strip);
    return seen;
}

} // namespace lumbrine
