// What the client is told of the model: every message that mirrors state goes out through here. Routines whose names
// end in IfChanged remember what they sent last; the others always send. Main thread only.
//
// While somebody moves the banks (not ReceiverState::quiet) messages that would show an intermediate state are held
// back: faders, selects, pans, automation modes, changed switches.
#pragma once

#include "base/bytes.h"
#include "model/mirror/client_endpoint.h"
#include "model/state/receiver_state.h"

#include <array>
#include <bitset>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine {

// What the client was last told of the input monitor on a strip, and of which track. The name is empty where the full
// name of the track is not known.
struct ToldMonitor {
    TrackIdentity track = {};
    bool on = false;
    TimePoint since = distantPast; // when the strip was first told to have that track
};

class ClientMirror {
public:
    ClientMirror(Runtime& runtime, const ReceiverState& state, ClientEndpoint& endpoint);

    // To the owner, or to the one peer that a snapshot is being made for. What a new owner is sent first are the names
    // of the strips.
    void emit(ByteView bytes);

    // ---- Several messages at once

    using Message = void (ClientMirror::*)();
    using Messages = std::span<const Message>; // in the order in which they are sent

    void send(Messages messages);

    // The same to the peer with that key alone.
    void sendTo(const std::string& key, Messages messages);

    // ---- One by one

    void sendTrackNameToClient(Strip strip, std::string_view name);
    std::function<void(Strip strip, std::string_view name, Ownership owner)> onNameTold; // set before the first
    void sendShownTrackNames(); // also that a strip has none any more
    void sendFaderToClient(Strip strip, double value);
    void sendShownFaders();

    void sendSwitchesIfChanged();
    void sendAllSwitches();
    void sendSelectsToClient();

    void sendPan(Strip strip, int side);
    void sendAllPans();
    void sendPanMode();

    void sendBankPosToClient();
    void sendVisibleFullNames();
    void sendVisibleColors();
    void sendVisibleInputMons();
    void resendView(); // the three above, while nobody moves the banks

    // What the client of that ownership was told; a newcomer that was told nothing yet means what is there. Absent
    // where no track was shown to it.
    std::optional<ToldMonitor> toldMonitor(Strip strip, Ownership owner) const;

    void sendAllAutoModes();
    void sendAutoModesIfChanged();

    void sendTransport();
    void sendTransportIfChanged();

    void sendSessAutoModes();
    void sendSessPan();

private:
    // The value of that kind for each shown strip.
    template <typename Value, typename ValueOf>
    std::vector<Value> shown(ValueOf valueOf) const;

    const Track* shownTrack(std::size_t slot) const; // null where no known track is shown
    std::optional<ToldMonitor> monitorOn(std::size_t slot) const;
    Bytes buildSwitchPayload() const;
    Bytes buildAutoModes() const;

    Runtime& runtime;
    const ReceiverState& state;
    ClientEndpoint& endpoint;
    std::optional<std::string> snapshotTarget;

    std::optional<Ownership> namesToldTo; // outside snapshots
    std::bitset<stripCount> named;        // strips that a client was ever told a name of
    PerStrip<std::optional<ToldMonitor>> toldMonitors;
    std::optional<Ownership> toldTo; // the client of these
    Bytes lastSentSwitches;
    Bytes lastSentAutoModes;
    bool lastSentPlaying = false;
    bool lastSentRecording = false;
};

// What the client is sent at each occasion that takes more than one message.
namespace occasion {

// Another part of the session is shown, or other tracks.
inline constexpr std::array<ClientMirror::Message, 4> bankView{
    &ClientMirror::sendBankPosToClient,
    &ClientMirror::sendVisibleFullNames,
    &ClientMirror::sendVisibleColors,
    &ClientMirror::sendVisibleInputMons,
};

// The client said hello. The rows of the session follow, then `session`.
inline constexpr std::array<ClientMirror::Message, 12> hello{
    &ClientMirror::sendShownTrackNames,  &ClientMirror::sendAllSwitches,      &ClientMirror::sendShownFaders,
    &ClientMirror::sendAllPans,          &ClientMirror::sendPanMode,          &ClientMirror::sendBankPosToClient,
    &ClientMirror::sendSelectsToClient,  &ClientMirror::sendVisibleFullNames, &ClientMirror::sendVisibleColors,
    &ClientMirror::sendVisibleInputMons, &ClientMirror::sendAllAutoModes,     &ClientMirror::sendTransport,
};

// Datagrams get lost: the shown state again, every 1.2 s.
inline constexpr std::array<ClientMirror::Message, 8> resend{
    &ClientMirror::sendAllSwitches, &ClientMirror::sendShownTrackNames, &ClientMirror::sendShownFaders,
    &ClientMirror::sendAllPans,     &ClientMirror::sendPanMode,         &ClientMirror::sendSelectsToClient,
    &ClientMirror::resendView,      &ClientMirror::sendAllAutoModes,
};

// A seek has ended; after `bankView`.
inline constexpr std::array<ClientMirror::Message, 6> afterSeek{
    &ClientMirror::sendShownTrackNames, &ClientMirror::sendAllSwitches,     &ClientMirror::sendShownFaders,
    &ClientMirror::sendAllPans,         &ClientMirror::sendSelectsToClient, &ClientMirror::sendAllAutoModes,
};

// A walk has given the surfaces back.
inline constexpr std::array<ClientMirror::Message, 4> afterWalk{
    &ClientMirror::sendBankPosToClient,
    &ClientMirror::sendShownTrackNames,
    &ClientMirror::sendAllSwitches,
    &ClientMirror::sendShownFaders,
};

// The tables of modes and pans, where a walk has filled them.
inline constexpr std::array<ClientMirror::Message, 2> session{
    &ClientMirror::sendSessAutoModes,
    &ClientMirror::sendSessPan,
};

} // namespace occasion

} // namespace lumbrine
