// The participants of the demo's tour: two clients of the receiver ("phones"), and the simulated Pro Tools. Offers what
// the steps of the tour do with them, and prints what happened. Main thread only.
#pragma once

#include "base/bilingual.h"
#include "platform/api/datagram_sockets.h"
#include "platform/api/runtime.h"
#include "remote/remote_client.h"
#include "simulator/simulated_pro_tools.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace lumbrine {

class DemoStage {
public:
    static constexpr std::size_t phoneA = 0;
    static constexpr std::size_t phoneB = 1;

    struct Given {
        Runtime& runtime;
        DatagramSockets& sockets;
        SimulatedProTools& proTools;
        Bilingual text; // for what is printed
        std::uint16_t receiverPort;
        std::function<bool()> receiverIsReady; // true once the session is scanned: clients may move the bank
        std::function<void(const std::string& line)> print;
    };

    explicit DemoStage(Given given);

    // ---- The phones. Strip and track numbers count from 1, as on the screen; the protocol counts from 0.

    remote::RemoteClient& phone(std::size_t which) { return *phones[which]; }
    const remote::SessionPicture& picture(std::size_t which) const { return phones[which]->picture(); }
    const remote::StripPicture& shownTo(std::size_t which, int strip) const;

    void connect(std::size_t which) { phones[which]->connect("127.0.0.1", given.receiverPort); }

    // The fader of a session track, from the latest row that phone A received; absent without such a row.
    std::optional<FaderValue> rowFader(int track) const;

    int fadersHeard = 0; // the number of messages about strips' faders that the phones received

    // Touches the fader, moves it to `value` (0-1) within a quarter of a second, and releases it. Returns at once.
    void sweep(std::size_t which, int strip, double value);

    // The time of the action whose answer the tour is waiting for; response times are measured from here.
    TimePoint actedAt = distantPast;
    void noteAct() { actedAt = given.runtime.now(); }

    // ---- The simulated Pro Tools

    SimulatorSnapshot::Strip hostStrip(int strip) const;
    SimulatedTrack track(int number) const; // hidden tracks do not count
    std::string trackOn(int strip) const;   // its name in quotation marks
    int firstShownTrack() const { return given.proTools.snapshot().offset + 1; }
    int trackCount() const { return given.proTools.snapshot().shownTracks; }

    bool receiverIsReady() const { return given.receiverIsReady(); }

    // Print a line about a phone, "→ ..." for what it sent and "← ..." for what it received; or about Pro Tools.
    void tell(std::size_t which, const std::string& what) const;
    void tellOfProTools(const std::string& what) const;

    // Runs `act` after `delay`, unless the stage has been destroyed by then.
    template <typename Function>
    void after(Duration delay, Function act) {
        given.runtime.postMainAfter(delay, [stage = std::weak_ptr(life), act = std::move(act)]() mutable {
            if (stage.lock()) act();
        });
    }

    const Given given;

private:
    void moveOn(std::size_t which, int strip, double value, int movesLeft);

    std::array<std::unique_ptr<remote::RemoteClient>, 2> phones;
    std::shared_ptr<const int> life = std::make_shared<int>(0);
};

// The strip with that number, 1-16.
Strip stripNumber(int number);

// The number with that many decimals, for example "0.72".
std::string fixed(double value, int decimals);

} // namespace lumbrine
