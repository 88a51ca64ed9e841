// The HUI side of the simulated Pro Tools: one or two surfaces as one bank onto the session, what they press, and what
// they show.
//
// No threads and no clock of its own: bytes and times go in, bytes and the next deadline come out. The session may be
// edited by others too; `advance` then shows what they changed.
#pragma once

#include "simulator/automation_keys.h"
#include "simulator/bank_rules.h"
#include "simulator/fader_groups.h"
#include "simulator/host_record.h"
#include "simulator/hui_surface_host.h"
#include "simulator/led_flasher.h"
#include "simulator/packet_maker.h"
#include "simulator/seeded_random.h"
#include "simulator/simulated_session.h"
#include "simulator/simulator_options.h"
#include "simulator/surface_message.h"

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace lumbrine {

class SimulatedHUIHost {
public:
    // The session outlives the host, and the host every later edit of the session.
    SimulatedHUIHost(const SimulatorOptions& simulatorOptions, SimulatedSession& shownSession);
    SimulatedHUIHost(const SimulatedHUIHost&) = delete;
    SimulatedHUIHost& operator=(const SimulatedHUIHost&) = delete;

    // From now on it is written down what happens; before the first `advance`. The recorder outlives the host.
    void recordTo(HostRecorder& hostRecorder);

    // Bytes of one packet from a surface (0 or 1), in pieces of any size, acted on at `now`.
    void receive(int surface, ByteView bytes, TimePoint now);

    // Does all that is due, and shows what has changed. Time does not go backwards.
    void advance(TimePoint now);

    // When `advance` has to be called at the latest.
    TimePoint nextDeadline() const;

    struct Outgoing {
        int surface;
        Bytes packet;
    };
    // What is to be sent, in order.
    std::vector<Outgoing> takeOutgoing();

    // ---- The user at the host's own screen. `advance` shows the result.

    void bank(BankButton button);
    void scrollTo(int newOffset); // kept within the session

    // ---- Ports and faults.

    // The host uses its ports, or no longer: then nothing goes out or comes in and no surface answers.
    void holdPorts(bool held);

    // The text of a dialog on the host's screen, or none. See SimulatorOptions::dialogFreezes.
    void setDialog(const std::optional<std::string>& text);

    void cut(int surface, bool cutOff); // see HUISurfaceHost::setCut; nothing is heard either

    void seeEveryPress() { losesPresses = false; } // from now on, whatever the options say

    // Mode buttons that were let go unheard. While one counts as down, every AUTO switch that is pressed sets its mode.
    void letGoOfModeButtons() { automation.releaseModes(); }

    // ---- Looking.

    int offset() const { return bankOffset; }
    int width() const; // of the bank, 8 or 16
    const HUISurfaceHost& port(int surface) const { return surfaces[static_cast<std::size_t>(surface)]->port; }
    SurfacePicture picture(int surface) const;
    int trackOn(int surface, int strip) const; // id, 0 for none
    bool isTouched(int surface, int strip) const;
    bool isAutoHeld(int surface, int strip) const;
    bool showsRightPan(int surface) const;
    std::uint64_t droppedPresses() const { return dropped; }

private:
    struct Surface {
        Surface(const SimulatorOptions& options, std::uint64_t seed)
            : port(options, seed), packets(options.packets, seed + 1) {}

        HUISurfaceHost port;
        PacketMaker packets;
        SurfaceDecoder decoder;
        LEDs down;                                                        // switches that are held
        LEDs ignoredUntilUp;                                              // switches whose press was dropped
        std::array<int, hui_address::stripCountOfSurface> touchedTrack{}; // id while the fader is touched
        int assign = hui_address::pan;
        bool rightPan = false;
    };

    // A value in the place of a track's name.
    struct ShownValue {
        bool ofPan; // or else of the fader
        TimePoint until;
    };

    Surface& at(int surface) { return *surfaces[static_cast<std::size_t>(surface)]; }
    const Surface& at(int surface) const { return *surfaces[static_cast<std::size_t>(surface)]; }

    // simulated_hui_host.cpp: presence, time and showing
    void advanceClock(TimePoint now);
    void advancePorts(TimePoint now);
    void advanceMeters(TimePoint now);
    void sendMeters();
    void show(TimePoint now);
    void moveTo(int newOffset);
    void noteChange(const SessionChange& change);
    void collect();
    void believeShown(int surface);
    HUISurfaceHost::Meters metersOf(int surface);
    void loseSysEx(int surface);
    int baseOf(int surface) const;
    int answeringCount() const;
    bool somethingFlashes() const;

    // hui_host_input.cpp: what surfaces do
    void act(int surface, const from_surface::Reset& message, TimePoint now);
    void act(int surface, const from_surface::PingReply& message, TimePoint now);
    void act(int surface, const from_surface::SwitchEdge& message, TimePoint now);
    void act(int surface, const from_surface::FaderMoved& message, TimePoint now);
    void act(int surface, const from_surface::VPotTurned& message, TimePoint now);
    void act(int surface, const from_surface::JogTurned& message, TimePoint now);
    AutomationKeys::Scope automationScope() const;
    void touchEdge(int surface, int strip, bool on);
    void showValue(int track, bool ofPan, TimePoint now);
    void stripPressed(int surface, int strip, int port);
    void assignPressed(int surface, int port);
    void transportPressed(int port);
    void transport2Pressed(int port);
    bool frozenAgainst(const SurfaceMessage& message) const;
    bool isDownAnywhere(int zone, int port) const;
    void letGoOfEverything(int surface);

    // hui_host_recording.cpp: nothing without a recorder
    void recordBank();
    void recordShown(int surface, const SurfacePicture& picture);
    void recordAct(HostAct::Kind kind, int surface, int strip, int detail);

    // hui_host_picture.cpp: what surfaces show
    void paintStrip(SurfacePicture& picture, int surface, int strip, const SimulatedTrack& track) const;
    SurfacePicture livePicture(int surface) const;
    void paintGlobals(SurfacePicture& picture, int surface) const;
    std::uint8_t autoLEDOf(const SimulatedTrack& track) const;
    static double shownPan(const SimulatedTrack& track, const Surface& surface);
    std::uint8_t ringOf(const SimulatedTrack& track, const Surface& surface) const;
    DisplayText displayOf(const SimulatedTrack& track, int surface, int strip) const;

    const SimulatorOptions options;
    SimulatedSession& session;
    std::vector<std::unique_ptr<Surface>> surfaces;
    FaderGroups groups;
    AutomationKeys automation;
    LEDFlasher flasher;
    SeededRandom chance;

    int bankOffset = 0;
    bool holdsPorts = true;
    std::optional<std::string> dialog;  // its text while the surfaces are frozen
    std::vector<SurfacePicture> frozen; // what they show then
    bool losesPresses = true;           // as often as the options say
    bool needsShowing = true;
    std::optional<TimePoint> clock; // the time of the last call
    std::optional<TimePoint> nextMeters;
    std::map<int, TimePoint> modeShownUntil; // by track id
    std::map<int, ShownValue> valuesShown;   // by track id
    std::set<std::pair<int, int>> clipped;   // track id and side
    std::vector<int> pendingModes;           // tracks whose automation has just changed
    std::uint64_t dropped = 0;
    std::vector<Outgoing> outgoing;
    HostRecorder* recorder = nullptr;
};

} // namespace lumbrine
