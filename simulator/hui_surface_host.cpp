#include "simulator/hui_surface_host.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace lumbrine {

namespace {

constexpr std::size_t partLength = 10; // characters of the main display in one message

struct LEDRow {
    int zone;
    int firstPort;
    int lastPort;
};

// The LEDs outside the strips that this host drives.
constexpr std::array globalLEDs{
    LEDRow{hui_address::assignZone, hui_address::output, hui_address::sendA},
    LEDRow{hui_address::transportZone, hui_address::rewind, hui_address::record},
    LEDRow{hui_address::transport2Zone, hui_address::returnToZero, hui_address::quickPunch},
    LEDRow{hui_address::counterZone, hui_address::timeCode, hui_address::rudeSolo},
    LEDRow{hui_address::autoEnableZone, 0, 5},
    LEDRow{hui_address::autoModeZone, hui_address::trim, hui_address::touchMode},
};

} // namespace

HUISurfaceHost::HUISurfaceHost(const SimulatorOptions& options, std::uint64_t seed)
    : options(options), writer(options), chance(seed) {}

bool HUISurfaceHost::advance(TimePoint now, bool pinging) {
    // A host that does not ping cannot expect replies, so the time-out stops, too.
    if (!pinging) {
        nextPing.reset();
        openSince.reset();
        return false;
    }
    if (answers && openSince && now - *openSince >= options.hostTimeout) {
        answers = false;
        openSince.reset();
        return true;
    }
    if (!nextPing) {
        nextPing = now;
        late = Duration::zero();
    }
    if (now < *nextPing + late) return false;
    sendPing(now);
    // A host that was held up skips the pings that it missed.
    while (*nextPing <= now)
        *nextPing += options.pingInterval;
    late = lateness();
    return false;
}

TimePoint HUISurfaceHost::nextDeadline() const {
    TimePoint deadline = nextPing ? *nextPing + late : TimePoint::max();
    if (answers && openSince) deadline = std::min(deadline, *openSince + options.hostTimeout);
    return deadline;
}

Duration HUISurfaceHost::lateness() {
    if (options.latePingOneIn > 0 && chance.oneIn(static_cast<std::uint64_t>(options.latePingOneIn)))
        return options.latePing;
    return Duration(static_cast<Duration::rep>(chance.unit() * static_cast<double>(options.pingJitter.count())));
}

void HUISurfaceHost::giveUp() {
    answers = false;
    openSince.reset();
    nextPing.reset();
}

void HUISurfaceHost::pingNow(TimePoint now) {
    sendPing(now);
}

void HUISurfaceHost::sendPing(TimePoint now) {
    // The time-out runs from the first ping without a reply, however many follow it.
    if (!openSince) openSince = now;
    if (cutOff) return;
    writer.ping();
    ++pings;
}

bool HUISurfaceHost::replied() {
    openSince.reset();
    return !std::exchange(answers, true);
}

void HUISurfaceHost::show(const SurfacePicture& picture) {
    if (!answers || cutOff) return;
    // Part by part in the chosen order; each part sends only what differs from what the surface shows.
    for (const DumpPart part : options.dumpOrder)
        send(part, picture);
}

void HUISurfaceHost::send(DumpPart part, const SurfacePicture& picture) {
    switch (part) {
    case DumpPart::ping:
        if (std::exchange(pingsInDump, false)) {
            writer.ping();
            ++pings;
        }
        break;
    case DumpPart::displays:
        sendDisplays(picture);
        break;
    case DumpPart::faders:
        sendFaders(picture);
        break;
    case DumpPart::rings:
        sendRings(picture);
        break;
    case DumpPart::stripLEDs:
        sendLEDs(picture, true);
        break;
    case DumpPart::globalLEDs:
        sendLEDs(picture, false);
        break;
    case DumpPart::counter:
        sendCounter(picture);
        break;
    }
}

void HUISurfaceHost::sendDisplays(const SurfacePicture& picture) {
    std::vector<HUIMessageWriter::Display> changed;
    for (std::size_t i = 0; i < shownDisplays.size(); ++i)
        if (shownDisplays[i] != picture.displays[i]) changed.push_back({static_cast<int>(i), picture.displays[i]});
    for (const auto& display : changed)
        shownDisplays[static_cast<std::size_t>(display.number)] = display.text;
    writer.displays(changed);
}

void HUISurfaceHost::sendFaders(const SurfacePicture& picture) {
    for (std::size_t i = 0; i < shownFaders.size(); ++i) {
        // With the option FaderEcho::afterRelease, a touched fader gets its position only after the release.
        if (picture.withheldFaders[i] || shownFaders[i] == picture.faders[i]) continue;
        shownFaders[i] = picture.faders[i];
        writer.fader(static_cast<int>(i), FaderValue::ofRaw(picture.faders[i]));
    }
}

void HUISurfaceHost::sendRings(const SurfacePicture& picture) {
    for (std::size_t i = 0; i < shownRings.size(); ++i) {
        if (shownRings[i] == picture.rings[i]) continue;
        shownRings[i] = picture.rings[i];
        writer.ring(static_cast<int>(i), picture.rings[i]);
    }
}

void HUISurfaceHost::sendLEDs(const SurfacePicture& picture, bool ofStrips) {
    const auto sendRow = [&](const LEDRow& row) {
        for (int port = row.firstPort; port <= row.lastPort; ++port) {
            const std::size_t index = ledIndex(row.zone, port);
            if (knownLEDs[index] && shownLEDs[index] == picture.leds[index]) continue;
            knownLEDs[index] = true;
            shownLEDs[index] = picture.leds[index];
            writer.led(row.zone, port, picture.leds[index]);
        }
    };
    if (!ofStrips) {
        std::ranges::for_each(globalLEDs, sendRow);
        return;
    }
    for (int strip = 0; strip < hui_address::stripCountOfSurface; ++strip) {
        sendRow({strip, hui_address::select, hui_address::solo});
        sendAutoLED(picture, strip);
        sendRow({strip, hui_address::vSel, hui_address::recordArm});
    }
}

void HUISurfaceHost::sendAutoLED(const SurfacePicture& picture, int strip) {
    const auto index = static_cast<std::size_t>(strip);
    if (shownAutoLEDs[index] == picture.autoLEDs[index]) return;
    shownAutoLEDs[index] = picture.autoLEDs[index];
    writer.autoLED(strip, picture.autoLEDs[index]);
}

void HUISurfaceHost::sendCounter(const SurfacePicture& picture) {
    if (options.mainDisplay && shownMainDisplay != picture.mainDisplay) {
        const std::string_view text = picture.mainDisplay;
        for (std::size_t at = 0; at < text.size(); at += partLength) {
            const std::string_view part = text.substr(at, partLength);
            if (shownMainDisplay && std::string_view(*shownMainDisplay).substr(at, partLength) == part) continue;
            writer.mainDisplay(static_cast<int>(at / partLength), part);
        }
        shownMainDisplay = picture.mainDisplay;
    }
    if (options.counter && shownCounter != picture.counter) {
        // Only the digits from the right up to the last changed one are sent.
        std::size_t count = picture.counter.size();
        while (shownCounter && (*shownCounter)[count - 1] == picture.counter[count - 1])
            --count;
        writer.counter(std::span(picture.counter).first(count));
        shownCounter = picture.counter;
    }
}

void HUISurfaceHost::showMeters(const Meters& meters) {
    if (!answers || cutOff) return;
    for (std::size_t strip = 0; strip < meters.size(); ++strip)
        for (std::size_t side = 0; side < 2; ++side) {
            const int level = meters[strip][side];
            // A level of 0 is sent once; any other is repeated at each meter period, even unchanged.
            if (level != 0 || shownMeters[strip][side] != 0)
                writer.meter(static_cast<int>(strip), static_cast<int>(side), level);
        }
    shownMeters = meters;
}

void HUISurfaceHost::forget() {
    forgetStrips();
    shownDisplays.fill(std::nullopt);
    shownRings.fill(std::nullopt);
    knownLEDs.reset();
    shownMainDisplay.reset();
    shownCounter.reset();
}

void HUISurfaceHost::forgetStrips() {
    for (std::size_t strip = 0; strip < shownFaders.size(); ++strip) {
        shownDisplays[strip].reset();
        shownFaders[strip].reset();
        shownRings[strip].reset();
        shownAutoLEDs[strip].reset();
        for (int port = hui_address::select; port <= hui_address::recordArm; ++port)
            knownLEDs[ledIndex(static_cast<int>(strip), port)] = false;
    }
}

void HUISurfaceHost::forgetFader(int strip) {
    shownFaders[static_cast<std::size_t>(strip)].reset();
}

std::vector<Bytes> HUISurfaceHost::take() {
    return writer.take();
}

} // namespace lumbrine
