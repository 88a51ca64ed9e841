// One port pair of the host: whether a surface answers there, what it shows already, and what has to be sent so that it
// shows something else. Knows nothing of tracks.
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
    HUISurfaceHost(SimulatorOptions simulatorOptions, std::uint64_t seed);

    // ---- Presence. A surface answers from its first reply on, until a ping has been open for the host's time-out.

    bool answering() const { return answers; }

    // Pings when it is time; the first time at once. True when the surface has just been given up.
    bool advance(TimePoint now, bool pinging);
    TimePoint nextDeadline() const;

    // It answers no longer until it is pinged and replies anew.
    void giveUp();

    void pingNow(TimePoint now); // beside the regular ones
    bool replied();              // true when it has just begun to answer

    // While cut, nothing leaves, and pings stay unanswered because nobody hears them.
    void setCut(bool cut) { cutOff = cut; }
    bool cut() const { return cutOff; }

    // ---- Showing. Only to a surface that answers and is not cut; what differs goes out in the order of the dump.

    void show(const SurfacePicture& picture);
    void showMeters(const Meters& meters); // those above 0 each time, those at 0 once

    // What the surface shows is no longer known, and is sent again by the next `show`.
    void forget();
    void forgetStrips();
    void forgetFader(int strip);

    // The next `show` begins with a ping, where the order of the dump has it.
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
    std::optional<TimePoint> nextPing;  // when it is due; absent until the first, and while there is no pinging
    Duration late = Duration::zero();   // by how much that one is late
    std::optional<TimePoint> openSince; // the oldest ping without an answer

    // What the surface shows as far as it is known.
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
