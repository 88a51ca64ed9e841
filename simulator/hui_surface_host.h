// One pair of ports of the host: knows whether a surface answers, what it shows, and which messages change that to
// another picture. Knows nothing of tracks.
#pragma once

#include "simulator/hui_message_writer.h"
#include "simulator/music_meter.h"
#include "simulator/seeded_random.h"
#include "simulator/surface_picture.h"

#include <array>
#include <optional>
#include <vector>

namespace lumbrine {

class HUISurfaceHost {
public:
    using Meters = std::array<MeterLevels, hui_address::stripCountOfSurface>;

    // The seed decides which pings are late.
    HUISurfaceHost(const SimulatorOptions& options, std::uint64_t seed);

    // ---- Presence. A surface counts as answering from its first reply until a ping stays unanswered for the time-out.

    bool answering() const { return answers; }

    // Sends a ping when it is due, the first one at once. Returns true when the surface has just been given up.
    bool advance(TimePoint now, bool pinging);
    TimePoint nextDeadline() const;

    // The surface counts as not answering until it replies to a later ping.
    void giveUp();

    void pingNow(TimePoint now); // in addition to the regular pings
    bool replied();              // call for each reply; true when the surface has just begun to answer

    // While the port is cut, nothing is sent. Pings count as sent and stay unanswered.
    void setCut(bool cut) { cutOff = cut; }
    bool cut() const { return cutOff; }

    // ---- Showing. Sends only to a surface that answers and is not cut. Differences are sent in the order of the dump.

    void show(const SurfacePicture& picture);
    void showMeters(const Meters& meters); // levels above 0 are sent each time, 0 only once

    // Marks what the surface shows as unknown, so that the next `show` sends it again.
    void forget();
    void forgetStrips();
    void forgetFader(int strip);

    // Makes the next `show` send a ping at its place in the order of the dump.
    void pingWithDump() { pingsInDump = true; }

    std::vector<Bytes> take();

    std::uint64_t pingsSent() const { return pings; }

private:
    void sendPing(TimePoint now);
    Duration lateness();
    void send(DumpPart part, const SurfacePicture& picture);
    void sendDisplays(const SurfacePicture& picture);
    void sendFaders(const SurfacePicture& picture);
    void sendRings(const SurfacePicture& picture);
    void sendLEDs(const SurfacePicture& picture, bool ofStrips);
    void sendAutoLED(const SurfacePicture& picture, int strip);
    void sendCounter(const SurfacePicture& picture);

    const SimulatorOptions options;
    HUIMessageWriter writer;
    SeededRandom chance;

    bool answers = false;
    bool cutOff = false;
    bool pingsInDump = false;
    std::uint64_t pings = 0;
    std::optional<TimePoint> nextPing;  // due time; absent before the first ping, and while there is no pinging
    Duration late = Duration::zero();   // the lateness of that ping
    std::optional<TimePoint> openSince; // the time of the oldest unanswered ping

    // What the surface shows; absent where unknown.
    std::array<std::optional<DisplayText>, hui_address::displayCount> shownDisplays;
    std::array<std::optional<std::uint16_t>, hui_address::stripCountOfSurface> shownFaders;
    std::array<std::optional<std::uint8_t>, hui_address::ringCount> shownRings;
    LEDs shownLEDs, knownLEDs;
    std::array<std::optional<std::uint8_t>, hui_address::stripCountOfSurface> shownAutoLEDs;
    std::optional<std::string> shownMainDisplay;
    std::optional<std::array<std::uint8_t, 8>> shownCounter;
    Meters shownMeters{};
};

} // namespace lumbrine
