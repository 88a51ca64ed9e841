// What the client is told of the model: every message that mirrors state goes out through here. Routines whose names
// end in IfChanged remember what they sent last; the others always send. Main thread only.
//
// While the banks are being moved (not ReceiverState::quiet) what would show an intermediate state is held back:
// faders, selects, pans, automation modes, changed switches.
#pragma once

#include "base/bytes.h"
#include "model/mirror/client_endpoint.h"
#include "model/state/receiver_state.h"

#include <optional>
#include <string>
#include <string_view>

namespace lumbrine {

class ClientMirror {
public:
    ClientMirror(Runtime& rt, const ReceiverState& receiverState, ClientEndpoint& clientEndpoint);

    // To the owner, or to the one peer that a snapshot is being made for.
    void emit(ByteView bytes);

    // Everything that `resend` emits goes to the peer with that key alone.
    template <typename Resend>
    void snapshotFor(const std::string& key, Resend resend) {
        snapshotTarget = key;
        resend();
        snapshotTarget.reset();
    }

    void sendTrackNameToClient(Strip strip, std::string_view name);
    void sendShownTrackNames(); // those that are not empty
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
    void sendBankView(); // the four above, in their order

    void sendAllAutoModes();
    void sendAutoModesIfChanged();

    void sendTransport();
    void sendTransportIfChanged();

    void sendSessAutoModes();
    void sendSessPan();

private:
    Bytes buildSwitchPayload() const;
    Bytes buildAutoModes() const;
    std::optional<std::size_t> shownTrack(std::size_t strip) const; // session index, while the position is known

    Runtime& runtime;
    const ReceiverState& state;
    ClientEndpoint& endpoint;
    std::optional<std::string> snapshotTarget;

    Bytes lastSentSwitches;
    Bytes lastSentAutoModes;
    bool lastSentPlaying = false;
    bool lastSentRecording = false;
};

} // namespace lumbrine
