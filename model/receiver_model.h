// The receiver itself: two emulated HUI surfaces, the link to the remote client, and the state of Pro Tools mirrored in
// between. A shell makes one, starts it and shows its published state. Several may live in one process.
#pragma once

#include "base/bilingual.h"
#include "model/state/paired_mode.h"
#include "model/state/published_state.h"
#include "model/state/receiver_platform.h"
#include "seal/pairing_key.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace lumbrine {

struct ReceiverParts;

class ReceiverModel {
public:
    // Gets each line of the log, and diagnostic lines, as they are written; on any thread, maybe several at once.
    using LineSink = std::function<void(const std::string& line)>;

    // Reads the environment (QV_PORT, QV_NO_BONJOUR, QV_DEBUG, LUMBRINE_CLIENTS); opens no port and no socket. Main
    // thread.
    //
    // Running jobs keep the model alive until they end. It is always destroyed on the main thread.
    static std::shared_ptr<ReceiverModel> create(const ReceiverPlatform& platform, Bilingual bilingual, LineSink sink);
    ReceiverModel(const ReceiverModel&) = delete;
    ReceiverModel& operator=(const ReceiverModel&) = delete;

    // Opens the MIDI ports, starts the timers and the client link and announces them. Logs what fails and goes on with
    // the rest. Main thread; a second call does nothing.
    void start();

    // Reads this computer's address, as `start` did: after a sleep the network may be another one. True when the
    // address has changed. Main thread.
    bool readAddress();

    // The keys that clients may seal with, instead of those before. Main thread.
    void setKeys(std::vector<PairingKey> keys);

    // Whether only clients with a key are let in, where LUMBRINE_CLIENTS does not decide that. Main thread.
    void letOnlyPairedIn(bool on);
    PairedMode pairedMode() const;

    // When a client last opened a session with each of the keys, in the order of `setKeys`; distantPast for never. Main
    // thread.
    std::vector<TimePoint> lastUsesOfKeys() const;

    // Writes one finished line, in the user's language, to the log. Any thread.
    void appendLog(const std::string& line);

    // The four navigation buttons: 0 channel back, 1 bank back, 2 channel forward, 3 bank forward; others do nothing.
    // Any thread.
    void bankMove(int kind);

    // Moves the surfaces so that they show that track of the session. Any thread.
    void seekTo(std::size_t track);

    // Makes Pro Tools reopen the MIDI ports. Main thread.
    void reconnectToPT();

    // The test sweep: takes the fader of strip 0 up and down once. Main thread.
    void runDemo();

    // For the end of the program, while the MIDI ports are still there: releases every switch and fader that is down in
    // Pro Tools; afterwards nothing goes down any more. Main thread.
    void letGo();

    // Main thread. The reference stays valid as long as the model.
    const PublishedState& published() const;

    // `observer` is called on the main thread after every change of the published state, in the middle of the work that
    // changed it: it should note that and look later.
    void onChange(std::function<void()> observer);

    // The UDP port: QV_PORT or 52700.
    std::uint16_t port() const;

    // Expires when the model has been destroyed. After letting go of the model, run the main loop until then; only then
    // may the platform go.
    std::weak_ptr<const void> lifetime() const { return life; }

private:
    friend class ModelBench; // tests put a session into the state

    ReceiverModel(const ReceiverPlatform& platform, Bilingual bilingual, LineSink sink);
    ~ReceiverModel();

    const std::shared_ptr<const int> life = std::make_shared<int>(0); // goes last
    const SystemInfo& system;
    std::unique_ptr<ReceiverParts> parts;
    bool started = false;
};

} // namespace lumbrine
