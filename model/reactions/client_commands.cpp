#include "model/reactions/client_commands.h"

#include "client_link/client_command.h"

#include <utility>
#include <variant>

namespace lumbrine {

// One command under way: an overload for each message.
class ClientCommands::Execution {
public:
    Execution(const ClientCommands& commands, const Sender& sender)
        : jobs(commands.jobs), state(commands.state), parts(commands.parts), key(sender.key), asked(sender.asked()) {}

    void operator()(const Hello&) const {
        parts.hello.pong(key);
        if (parts.hello.claimFollowUp())
            onMain([&hello = parts.hello](ReceiverState&, TimePoint) { hello.followUp(); });
    }

    // ---- Faders

    void operator()(const FaderMove& command) const {
        const double value = command.value.unit();
        state.presence.lastHand = jobs.runtime.now();
        const bool moved = engineFor(command.strip).moveByHand(engineStripFor(command.strip), value);
        onMain([strip = Strip::of(command.strip), value, moved](ReceiverState& known, TimePoint arrived) {
            if (!strip) return;
            StripState& shown = known.published.strip(*strip);
            shown.movedByClient = arrived;
            if (!moved) return;
            shown.fader = value;
            known.published.changed();
        });
    }

    void operator()(const FaderTouch& command) const {
        if (const auto strip = Strip::of(command.strip)) parts.fingers.touch(*strip, asked.at);
    }

    void operator()(const FaderRelease& command) const {
        if (const auto strip = Strip::of(command.strip)) parts.fingers.release(*strip);
    }

    // ---- Switches

    void operator()(const MutePress& command) const { press(command.strip, hui::mutePort); }
    void operator()(const SoloPress& command) const { press(command.strip, hui::soloPort); }
    void operator()(const RecArmPress& command) const { press(command.strip, hui::recArmPort); }
    void operator()(const SelectPress& command) const { press(command.strip, hui::selectPort); }

    // ---- Pan

    void operator()(const VpotDelta& command) const {
        if (command.delta == 0) return; // a client's sign of life
        if (engineFor(command.strip).turnByHand(engineStripFor(command.strip), command.delta)) return;
        later(command_name::pan, command.strip, [&surfaces = parts.surfaces, delta = command.delta](Strip strip) {
            return surfaces.engineOf(strip).turnByHand(strip.engineStrip(), delta);
        });
    }

    void operator()(const PanModeToggle&) const {
        onMain([&pan = parts.pan](ReceiverState&, TimePoint) { pan.toggleSide(); });
    }

    void operator()(const PanSeek& command) const {
        onTrack(command_name::pan, command.strip,
                [&pan = parts.pan, command, asked = asked](Strip) { pan.seek(command.strip, command.target, asked); });
    }

    // ---- Banks

    void operator()(const BankMove& command) const { parts.seekWorker.bankMove(command.kind, asked.owner); }

    void operator()(const SeekBank& command) const { parts.seekWorker.seekBank(command.target, asked.owner); }

    void operator()(const Recalibrate&) const {
        onMain([&calibration = parts.calibration, asked = asked](ReceiverState&, TimePoint) {
            calibration.calibrateBanks(true, asked);
        });
        parts.metadata.refreshFullNames();
    }

    void operator()(const VisibleRange& command) const {
        parts.visibleRange.refreshVisibleRange(command.start, command.count, asked);
    }

    // ---- Tracks and groups

    void operator()(const InputMonitorToggle& command) const {
        onMain([strip = Strip::of(command.strip), &wishes = parts.wishes, asked = asked](ReceiverState&, TimePoint) {
            if (strip) wishes.toggleInputMonitor(*strip, asked);
        });
    }

    void operator()(const SetAutoMode& command) const {
        onTrack(command_name::mode, command.strip,
                [&automation = parts.automation, mode = command.mode, asked = asked](Strip strip) {
                    automation.setAutoMode(strip, mode, asked);
                });
    }

    void operator()(const GroupAutoMode& command) const {
        parts.groups.groupSetAutoMode(command.members, command.huiPort, asked);
    }

    void operator()(const GroupMute& command) const {
        parts.wishes.setGroup(TrackSwitch::mute, command.members, command.enabled, asked);
    }

    void operator()(const GroupSolo& command) const {
        parts.wishes.setGroup(TrackSwitch::solo, command.members, command.enabled, asked);
    }

    void operator()(const GroupFaders& command) const { parts.groups.groupSetFaders(command.entries, asked); }

private:
    // The part of a command that needs the state, as a job small enough to be posted without allocation. It gets the
    // time when the datagram arrived, however late the main thread comes to it.
    template <typename Rest>
    void onMain(Rest rest) const {
        jobs.runOnMain([&known = state, arrived = asked.at, rest = std::move(rest)] { rest(known, arrived); });
    }

    void press(std::uint8_t strip, int port) const {
        if (parts.surfaces.hwMute(strip, port)) return;
        later(command_name::press, strip,
              [&surfaces = parts.surfaces, port](Strip shown) { return surfaces.hwMute(shown.index(), port); });
    }

    // For when the surfaces are closed to hands.
    template <typename Act>
    void later(CommandName name, std::uint8_t number, Act act) const {
        onTrack(name, number, [&queue = parts.queue, &known = state, name, asked = asked, act](Strip strip) {
            queue.performLater({.name = name, .track = known.shownOn(strip), .asked = asked, .perform = act});
        });
    }

    // On the main thread, if the strip has the name by then that the client meant when the datagram came.
    template <typename Act>
    void onTrack(CommandName name, std::uint8_t number, Act act) const {
        const auto strip = Strip::of(number);
        if (!strip) return;
        const auto meant = parts.surfaces.knownLabel(*strip);
        jobs.runOnMain([&surfaces = parts.surfaces, &drops = parts.drops, name, strip = *strip, meant, act] {
            if (!meant || meant != surfaces.knownLabel(strip)) return drops.tell(name, DropReason::trackGone);
            act(strip);
        });
    }

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
    const std::string_view key;
    const Asked asked;
};

ClientCommands::ClientCommands(const Jobs& jobs, ReceiverState& state, Parts parts)
    : jobs(jobs), state(state), parts(parts) {}

void ClientCommands::handleUDP(ByteView bytes, const Sender& sender) {
    if (!isClientDatagram(bytes)) return;
    state.presence.lastUDP = sender.arrived;
    if (sender.ownership != current) takeControl(sender.ownership);
    if (const auto command = parseClientCommand(bytes)) std::visit(Execution(*this, sender), *command);
}

void ClientCommands::takeControl(Ownership owner) {
    current = owner;
    parts.fingers.newOwner();
    parts.surfaces.newOwner(owner);
    parts.queue.ownerIs(owner);
    jobs.runOnMain([this, owner] {
        for (StripState& strip : state.published.strips) {
            strip.liftFinger(jobs.runtime.now());
            strip.panSeek.reset();
        }
        parts.queue.newOwner(owner);
    });
}

} // namespace lumbrine
