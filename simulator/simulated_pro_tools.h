// The simulated Pro Tools as one object: a session, its HUI surfaces on MIDI ports, its scripting service, its screen,
// and faults. One serial queue drives the surfaces and another one the scripting service. The receiver meets it through
// MIDI bytes, through a wire that a server connects to the scripting service, and through the elements of its screen.
//
// Any thread may make any public call. Every call returns at once.
#pragma once

#include "platform/api/midi_connections.h"
#include "platform/api/runtime.h"
#include "simulator/restless_user.h"
#include "simulator/simulated_accessibility.h"
#include "simulator/simulated_hui_host.h"
#include "simulator/simulated_screen.h"
#include "simulator/simulated_scripting.h"
#include "simulator/simulated_session.h"
#include "simulator/simulator_options.h"

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lumbrine {

// Its state at one moment.
struct SimulatorSnapshot {
    struct Strip {
        int trackID = 0;                         // 0 for no track
        std::string display;                     // four characters
        FaderValue fader = FaderValue::ofRaw(0); // of the track; 0 without a track
        std::uint8_t ring = 0;                   // as sent
        std::uint8_t leds = 0;                   // bit p is the LED of port p
        bool touched = false;
        bool autoHeld = false; // its AUTO switch is down
    };
    struct Surface {
        bool connected = false; // both MIDI ports are there
        bool answering = false; // it replies to pings
        bool showsRightPan = false;
        std::uint64_t pingsSent = 0;
        std::uint64_t packetsReceived = 0;
        std::array<Strip, hui_address::stripCountOfSurface> strips;
    };

    TimePoint at;
    int offset = 0; // of the bank, into the shown tracks
    int width = 0;  // of the bank, in strips
    int shownTracks = 0;
    bool sessionOpen = false;
    bool dialogOpen = false;
    std::optional<std::uint16_t> scriptingPort; // TCP port of the scripting service; absent when it is not offered
    SimulatedTransport transport;
    std::uint64_t droppedPresses = 0;
    std::vector<Surface> surfaces;
};

struct ReceivedPacket {
    TimePoint at;
    Bytes bytes;
};

class SimulatedProTools {
public:
    // Starts at once. Precondition: the options are valid (problemWith). Runtime and connections must outlive this
    // object.
    SimulatedProTools(Runtime& runtime, MIDIConnections& connections, const SimulatorOptions& options,
                      const SimulatedSession& initialSession);
    ~SimulatedProTools();
    SimulatedProTools(const SimulatedProTools&) = delete;
    SimulatedProTools& operator=(const SimulatedProTools&) = delete;

    // ---- Actions of the user on Pro Tools' own screen, or of another program.

    // Runs `change` on the session, then returns; the surfaces show the result right after. `change` runs under a lock,
    // so it must not wait.
    void edit(const std::function<void(SimulatedSession&)>& change);

    void bank(BankButton button);
    void scrollTo(int offset);

    // Closes the session, and opens another one after SimulatorOptions::sessionOpensAfter.
    void exchangeSession(const SimulatedSession& next);

    // Saves the session, which takes this long. Only the scripting service shows that.
    void saveSession(Duration duration);

    // Opens a dialog that blocks the whole program until closeDialog, or until OK is pressed on the screen. See
    // SimulatorOptions::dialogFreezes and ScriptingOptions::inDialog.
    void openDialog(const std::string& text);
    void closeDialog();

    // ---- Faults.

    void silence(int surface, Duration duration); // sends nothing to this surface and receives nothing from it
    void stick(Duration duration);                // does nothing at all, then reacts to everything received meanwhile;
                                                  // so does the scripting service
    void grabPorts();

    // Stops using the MIDI ports and shows an alert. grabPorts, or OK in the Peripherals dialog, uses them again.
    void releasePorts();

    // Ends all trouble: the restless user stops, no press is lost any more, no mode button is down, the scripting
    // service answers, the screen is readable and has no dialog, and the effects of silence, stick, releasePorts and
    // exchangeSession are over.
    void rest();

    // ---- Scripting. A server that connects it to a wire must be destroyed before this object.

    SimulatedScripting& scripting() { return scriptingService; }

    // ---- The screen. Release all its elements before this object is destroyed.

    SimulatedAccessibility& screen() { return screenAccess; }

    // For the user's actions on windows and dialogs. `arrange` runs under a lock, so it must not wait.
    void arrangeScreen(const std::function<void(SimulatedScreen&, TimePoint now)>& arrange);

    // For a shell that shows the screen, and for other programs that read and press it. While the program is stuck,
    // `body` is not called. It runs under a lock, so it must not wait.
    void lookAtScreen(const std::function<void(SimulatedScreen&, TimePoint now)>& body) LUMBRINE_EXCLUDES(mutex);
    void actOnScreen(const std::function<void(SimulatedScreen&, TimePoint now)>& body) LUMBRINE_EXCLUDES(mutex);

    // ---- Looking.

    bool hasMIDI() const { return ports[0] != nullptr; } // false when this computer has no MIDI system

    SimulatedSession session() const; // a copy
    SimulatorSnapshot snapshot() const;

    // The packets received from this surface, oldest first, at most SimulatorOptions::logLimit. Includes those that the
    // host ignored because of a fault.
    std::vector<ReceivedPacket> received(int surface) const;

    // The record so far, if the options ask for one. Call once.
    HostRecord takeRecord();

    const SimulatorOptions options;

private:
    struct Incoming {
        TimePoint sent;
        TimePoint due;
        int surface;
        Bytes bytes;
    };

    void arrived(int surface, ByteView bytes) LUMBRINE_EXCLUDES(mutex);
    void change(const std::function<void(TimePoint)>& body) LUMBRINE_EXCLUDES(mutex);
    void wake() LUMBRINE_EXCLUDES(mutex);
    void runUntilNow(TimePoint now) LUMBRINE_REQUIRES(mutex);
    void applyFaults(TimePoint now) LUMBRINE_REQUIRES(mutex);
    void openNextSession(TimePoint now) LUMBRINE_REQUIRES(mutex);
    TimePoint nextDeadline(TimePoint now) const LUMBRINE_REQUIRES(mutex);
    SimulatorSnapshot::Strip stripNow(const SurfacePicture& picture, int surface, int strip) const
        LUMBRINE_REQUIRES(mutex);

    Runtime& runtime;
    mutable Mutex mutex;
    SimulatedSession theSession LUMBRINE_GUARDED_BY(mutex);
    std::optional<HostRecorder> recorder LUMBRINE_GUARDED_BY(mutex);
    SimulatedHUIHost host LUMBRINE_GUARDED_BY(mutex);
    RestlessUser user LUMBRINE_GUARDED_BY(mutex);
    SimulatedScreen theScreen LUMBRINE_GUARDED_BY(mutex);

    std::deque<Incoming> inbox LUMBRINE_GUARDED_BY(mutex);
    std::array<std::deque<ReceivedPacket>, 2> log LUMBRINE_GUARDED_BY(mutex);
    std::array<std::uint64_t, 2> packetCount LUMBRINE_GUARDED_BY(mutex) = {};
    std::array<TimePoint, 2> silentUntil LUMBRINE_GUARDED_BY(mutex) = {distantPast, distantPast};
    TimePoint stuckUntil LUMBRINE_GUARDED_BY(mutex) = distantPast;
    TimePoint grabsPortsAt LUMBRINE_GUARDED_BY(mutex);
    TimePoint inProgressUntil LUMBRINE_GUARDED_BY(mutex) = distantPast;     // end of opening or saving a session
    std::optional<SimulatedSession> nextSession LUMBRINE_GUARDED_BY(mutex); // opened at inProgressUntil
    TimePoint nextWake LUMBRINE_GUARDED_BY(mutex) = TimePoint::max();       // the earliest posted wake-up
    bool portsAreMade LUMBRINE_GUARDED_BY(mutex) = false;                   // nothing may be sent before
    bool ending LUMBRINE_GUARDED_BY(mutex) = false;

    // The queue is destroyed before the connections, because its jobs send through them. Jobs and connections post to
    // it only under the lock and only while `ending` is false.
    std::array<std::unique_ptr<MIDIConnection>, 2> ports;
    std::unique_ptr<SerialQueue> queue;

    SimulatedScripting scriptingService; // its jobs edit the session, which posts to the queue above
    SimulatedAccessibility screenAccess;
};

} // namespace lumbrine
