#include "model/reactions/client_commands.h"

#include "client_link/client_command.h"

#include <utility>
#include <variant>

namespace lumbrine {

// One command under way: an overload for each message.
class ClientCommands::Execution {
public:
    Execution(const ClientCommands& commands, const Sender& sender)
        : jobs(commands.jobs), state(commands.state), parts(commands.parts), sender(sender) {}

    void operator()(const Hello&) const {
        parts.hello.pong(sender.key);
        if (parts.hello.claimFollowUp())
            onMain([&hello = parts.hello](ReceiverState&, TimePoint) { hello.followUp(); });
    }

    // ---- Faders

    void operator()(const FaderMove& command) const {
        const double value = command.value.unit();
        engineFor(command.strip).sendFader(engineStripFor(command.strip), value);
        onMain([strip = Strip::of(command.strip), value](ReceiverState& known, TimePoint arrived) {
            if (!strip) return;
            StripState& moved = known.published.strip(*strip);
            moved.fader = value;
            moved.movedByClient = arrived;
            known.published.changed();
        });
    }

    void operator()(const FaderTouch& command) const {
        engineFor(command.strip).touch(engineStripFor(command.strip));
        onMain([strip = Strip::of(command.strip)](ReceiverState& known, TimePoint arrived) {
            if (!strip) return;
            StripState& held = known.published.strip(*strip);
            held.touched = true;
            held.movedByClient = arrived;
        });
    }

    void operator()(const FaderRelease& command) const {
        engineFor(command.strip).release(engineStripFor(command.strip));
        onMain([strip = Strip::of(command.strip), &mirror = parts.mirror](ReceiverState& known, TimePoint) {
            if (!strip) return;
            StripState& left = known.published.strip(*strip);
            left.touched = false;
            mirror.sendFaderToClient(*strip, left.fader);
        });
    }

    // ---- Switches

    void operator()(const MutePress& command) const { press(command.strip, hui::mutePort); }
    void operator()(const SoloPress& command) const { press(command.strip, hui::soloPort); }
    void operator()(const RecArmPress& command) const { press(command.strip, hui::recArmPort); }
    void operator()(const SelectPress& command) const { press(command.strip, hui::selectPort); }

    // ---- Pan

    void operator()(const VpotDelta& command) const {
        engineFor(command.strip).sendVpotDelta(engineStripFor(command.strip), command.delta);
    }

    void operator()(const PanModeToggle&) const {
        for (const SurfaceID surface : {SurfaceID::A, SurfaceID::B})
            parts.desk.flipPanSide(surface);
        onMain([&pan = parts.pan](ReceiverState& known, TimePoint) { pan.setPanMode(!known.published.panRight); });
    }

    void operator()(const PanSeek& command) const {
        onMain([&pan = parts.pan, command](ReceiverState&, TimePoint) { pan.seek(command.strip, command.target); });
    }

    // ---- Banks

    void operator()(const BankMove& command) const { parts.seekWorker.bankMove(command.kind); }

    void operator()(const SeekBank& command) const { parts.seekWorker.seekBank(command.target); }

    void operator()(const Recalibrate&) const {
        onMain([&calibration = parts.calibration](ReceiverState&, TimePoint) { calibration.calibrateBanks(true); });
        parts.metadata.refreshFullNames();
    }

    void operator()(const VisibleRange& command) const {
        parts.visibleRange.refreshVisibleRange(command.start, command.count);
    }

    // ---- Tracks and groups

    void operator()(const InputMonitorToggle& command) const {
        onMain(
            [strip = Strip::of(command.strip), &wishes = parts.wishes, origin = origin()](ReceiverState&, TimePoint) {
                if (strip) wishes.toggleInputMonitor(*strip, origin);
            });
    }

    void operator()(const SetAutoMode& command) const {
        if (const auto strip = Strip::of(command.strip)) parts.automation.setAutoMode(*strip, command.mode);
    }

    void operator()(const GroupAutoMode& command) const {
        parts.groups.groupSetAutoMode(command.members, command.huiPort);
    }

    void operator()(const GroupMute& command) const {
        parts.wishes.setGroup(TrackSwitch::mute, command.members, command.enabled, origin());
    }

    void operator()(const GroupSolo& command) const {
        parts.wishes.setGroup(TrackSwitch::solo, command.members, command.enabled, origin());
    }

    void operator()(const GroupFaders& command) const { parts.groups.groupSetFaders(command.entries); }

private:
    // The part of a command that needs the state, as a job small enough to be posted without allocation. It gets the
    // time when the datagram arrived, however late the main thread comes to it.
    template <typename Rest>
    void onMain(Rest rest) const {
        jobs.runOnMain([&known = state, arrived = sender.arrived, rest = std::move(rest)] { rest(known, arrived); });
    }

    WishOrigin origin() const { return {.owner = sender.ownership, .arrived = sender.arrived}; }

    void press(std::uint8_t strip, int port) const { parts.surfaces.hwMute(strip, port); }

    // Any strip number: those beyond 15 reach surface B's engine as one of its own beyond 7, which it ignores.
    HUIEngine& engineFor(std::uint8_t strip) const {
        return parts.surfaces.engine(strip < stripsPerSurface ? SurfaceID::A : SurfaceID::B);
    }
    static int engineStripFor(std::uint8_t strip) {
        return strip < stripsPerSurface ? strip : strip - stripsPerSurface;
    }

    const Jobs& jobs;
    ReceiverState& state;
    const Parts& parts;
    const Sender& sender;
};

ClientCommands::ClientCommands(const Jobs& jobs, ReceiverState& state, Parts parts)
    : jobs(jobs), state(state), parts(parts) {}

void ClientCommands::handleUDP(ByteView bytes, const Sender& sender) {
    if (!isClientDatagram(bytes)) return;
    state.presence.lastUDP = sender.arrived;
    if (const auto command = parseClientCommand(bytes)) std::visit(Execution(*this, sender), *command);
}

} // namespace lumbrine
