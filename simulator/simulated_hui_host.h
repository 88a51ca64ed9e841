// The HUI side of the simulated Pro Tools. One or two surfaces form one bank on the session; this class executes what
// they press and computes what they show.
//
// It has no thread and no clock: bytes and times go in, bytes and the next deadline come out. Others may edit the
// session too; `advance` then shows the changes.
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
    // The session must outlive the host. The host listens to the session, so it must live until the last edit.
    SimulatedHUIHost(const SimulatorOptions& options, SimulatedSession& session);
    SimulatedHUIHost(const SimulatedHUIHost&) = delete;
    SimulatedHUIHost& operator=(const SimulatedHUIHost&) = delete;

    // Starts recording. Call it before the first `advance`. The recorder must outlive the host.
    void recordTo(HostRecorder& hostRecorder);

    // Handles bytes from a surface (0 or 1) at time `now`. Messages may be split anywhere between calls.
    void receive(int surface, ByteView bytes, TimePoint now);

    // Does everything that is due at `now`, and shows all changes. `now` must not decrease.
    void advance(TimePoint now);

    // The latest time for the next call of `advance`.
    TimePoint nextDeadline() const;

    struct Outgoing {
        int surface;
        Bytes packet;
    };
    // Returns and removes the packets to send, in order.
    std::vector<Outgoing> takeOutgoing();

    // ---- The user at the host's own screen. `advance` shows the result.

    void bank(BankButton button);
    void scrollTo(int newOffset); // clamped to the session

    // ---- Ports and faults.

    // Sets whether the host uses its ports. If not, it sends and receives nothing, and no surface answers.
    void holdPorts(bool held);

    // Sets the text of the dialog on the host's screen; absent for no dialog. See SimulatorOptions::dialogFreezes.
    void setDialog(const std::optional<std::string>& text);

    void cut(int surface, bool cutOff); // as HUISurfaceHost::setCut; also ignores messages from the surface

    void seeEveryPress() { losesPresses = false; } // from now on, no press is dropped, whatever the options say

    // Releases all mode buttons. A release that was lost would leave one down, and then every press of an AUTO switch
    // sets its mode.
    void letGoOfModeButtons() { automation.releaseModes(); }

    // ---- Looking.

    int offset() const { return bankOffset; }
    int width() const; // of the bank in strips: 8 or 16
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
        LEDs down;                                                        // held switches
        LEDs ignoredUntilUp;                                              // switches whose press was dropped
        std::array<int, hui_address::stripCountOfSurface> touchedTrack{}; // track id while the fader is touched, else 0
        int assign = hui_address::pan;
        bool rightPan = false;
    };

    // A value that is shown instead of a track's name.
    struct ShownValue {
        bool ofPan; // false: the fader's value
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
    std::optional<std::string> dialog;  // the dialog's text while the surfaces are frozen
    std::vector<SurfacePicture> frozen; // the pictures shown during the dialog
    bool losesPresses = true;           // false: the option to drop presses is off
    bool needsShowing = true;
    std::optional<TimePoint> clock; // the time of the last call
    std::optional<TimePoint> nextMeters;
    std::map<int, TimePoint> modeShownUntil; // by track id
    std::map<int, ShownValue> valuesShown;   // by track id
    std::set<std::pair<int, int>> clipped;   // track id and side
    std::vector<int> pendingModes;           // ids of tracks whose automation mode has just changed
    std::uint64_t dropped = 0;
    std::vector<Outgoing> outgoing;
    HostRecorder* recorder = nullptr;
};

} // namespace lumbrine
