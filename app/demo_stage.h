// Who is on stage in the demo's tour: two clients of the receiver, and the simulated Pro Tools behind it. What they do
// and what it shows, in words. Main thread only.
#pragma once

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
        std::uint16_t receiverPort;
        std::function<bool()> receiverIsReady; // it knows the session and leaves the banks alone
        std::function<void(const std::string& line)> print;
    };

    explicit DemoStage(Given what);

    // ---- The phones. People count strips and tracks from 1.

    remote::RemoteClient& phone(std::size_t which) { return *phones[which]; }
    const remote::SessionPicture& picture(std::size_t which) const { return phones[which]->picture(); }
    const remote::StripPicture& shownTo(std::size_t which, int strip) const;

    void connect(std::size_t which) { phones[which]->connect("127.0.0.1", given.receiverPort); }

    // The fader of a session track, as phone A has been told.
    std::optional<FaderValue> rowFader(int track) const;

    int fadersHeard = 0; // messages about a strip's fader

    // Touches the fader, moves it there in a quarter of a second, and lets go.
    void sweep(std::size_t which, int strip, double value);

    // When the phone did what it now waits to hear of.
    TimePoint actedAt = distantPast;
    void noteAct() { actedAt = given.runtime.now(); }

    // ---- The simulated Pro Tools

    SimulatorSnapshot::Strip hostStrip(int strip) const;
    SimulatedTrack track(int number) const; // of those that are not hidden
    std::string trackOn(int strip) const;   // its name in quotation marks
    int firstShownTrack() const { return given.proTools.snapshot().offset + 1; }
    int trackCount() const { return given.proTools.snapshot().shownTracks; }

    bool receiverIsReady() const { return given.receiverIsReady(); }

    void tell(std::size_t which, const std::string& what) const; // of a phone: "→ ..." or "← ..."
    void tellOfProTools(const std::string& what) const;

    // Later, unless the stage has gone.
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

// The strip that people call by that number, 1-16.
Strip stripNumber(int number);

// "0.72"
std::string fixed(double value, int decimals);

} // namespace lumbrine
