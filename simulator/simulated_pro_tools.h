// The simulated Pro Tools as one object: a session, its HUI surfaces on MIDI ports, its scripting service, its screen,
// and faults. The surfaces are driven by one serial queue of the runtime and the scripting service by another. It meets
// the receiver through MIDI bytes, through whatever wire somebody connects to the scripting service, and through the
// elements of its screen.
//
// Every public call may come from any thread and returns at once.
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

// What it showed and knew at one moment.
struct SimulatorSnapshot {
    struct Strip {
        int trackID = 0;                         // 0: no track
        std::string display;                     // four characters
        FaderValue fader = FaderValue::ofRaw(0); // of the track; 0 without one
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
    std::optional<std::uint16_t> scriptingPort; // where the scripting service is offered
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
    // The options have no problem (problemWith). Runtime and connections outlive this. It begins at once.
    SimulatedProTools(Runtime& rt, MIDIConnections& connections, SimulatorOptions simulatorOptions,
                      const SimulatedSession& initialSession);
    ~SimulatedProTools();
    SimulatedProTools(const SimulatedProTools&) = delete;
    SimulatedProTools& operator=(const SimulatedProTools&) = delete;

    // ---- The user at its own screen, or another program.

    // Runs `change` on the session before it returns; the surfaces show the result right after. `change` runs under the
    // lock: it edits and looks, and does nothing that waits.
    void edit(const std::function<void(SimulatedSession&)>& change);

    void bank(BankButton button);
    void scrollTo(int offset);

    // Closes the session and opens another one a while later, as the options say.
    void exchangeSession(const SimulatedSession& next);

    // The session is being saved for so long; only the scripting service shows it.
    void saveSession(Duration duration);

    // A dialog that holds up the whole program until it is closed, here or by its OK on the screen. See
    // SimulatorOptions::dialogFreezes and ScriptingOptions::inDialog.
    void openDialog(const std::string& text);
    void closeDialog();

    // ---- Faults.

    void silence(int surface, Duration duration); // nothing goes out to that surface or comes in from it
    void stick(Duration duration);                // does nothing at all, then reacts to all that came meanwhile;
                                                  // so does the scripting service
    void grabPorts();

    // Surfaces are deaf and mute until the ports are grabbed again, which OK in the Peripherals dialog does too. An
    // alert tells the user of it.
    void releasePorts();

    // No more trouble: the restless user rests, no press is lost any more, no mode button is down, the scripting
    // service serves, the screen can be read and has no dialog on it, and what silence, stick, releasePorts and
    // exchangeSession began is over.
    void rest();

    // ---- Scripting. Whoever serves it by a wire is gone before this is.

    SimulatedScripting& scripting() { return scriptingService; }

    // ---- The screen. Whoever reads it by this holds no element any more when this goes.

    SimulatedAccessibility& screen() { return screenAccess; }

    // What its user does with windows and dialogs. `arrange` runs under the lock and does nothing that waits.
    void arrangeScreen(const std::function<void(SimulatedScreen&, TimePoint now)>& arrange);

    // ---- Looking.

    bool hasMIDI() const { return ports[0] != nullptr; } // false: this computer has no MIDI system

    SimulatedSession session() const; // a copy
    SimulatorSnapshot snapshot() const;

    // Packets as they came from that surface, oldest first; at most as many as the options keep. All of them, also
    // those that came while the host was deaf.
    std::vector<ReceivedPacket> received(int surface) const;

    // What was done and shown so far, where the options ask for a record; once.
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
    void lookAtScreen(const std::function<void(SimulatedScreen&, TimePoint now)>& body) LUMBRINE_EXCLUDES(mutex);
    void actOnScreen(const std::function<void(SimulatedScreen&, TimePoint now)>& body) LUMBRINE_EXCLUDES(mutex);
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
    TimePoint inProgressUntil LUMBRINE_GUARDED_BY(mutex) = distantPast;     // a session is opened or saved
    std::optional<SimulatedSession> nextSession LUMBRINE_GUARDED_BY(mutex); // opens then
    TimePoint nextWake LUMBRINE_GUARDED_BY(mutex) = TimePoint::max();       // the earliest wake that is posted
    bool portsAreMade LUMBRINE_GUARDED_BY(mutex) = false;                   // before that nothing may send
    bool ending LUMBRINE_GUARDED_BY(mutex) = false;

    // The queue goes before the connections: its jobs send through them. Jobs and connections post to it under the lock
    // and only before the end has begun.
    std::array<std::unique_ptr<MIDIConnection>, 2> ports;
    std::unique_ptr<SerialQueue> queue;

    SimulatedScripting scriptingService; // its jobs edit the session, and with that post to the queue above
    SimulatedAccessibility screenAccess;
};

} // namespace lumbrine
