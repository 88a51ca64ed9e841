// SimulatedHUIHost: the pictures of the surfaces, computed from the session.
#include "simulator/simulated_hui_host.h"
#include "simulator/value_text.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace lumbrine {

namespace {

constexpr int centrePosition = 6;
constexpr std::uint8_t centreLED = 0x40;
constexpr int framesPerSecond = 25;

DisplayText assignText(int port) {
    constexpr std::array<std::string_view, hui_address::portCount> names{"Outp", "Inpt", "Pan ", "SndE",
                                                                         "SndD", "SndC", "SndB", "SndA"};
    return shortName(names[static_cast<std::size_t>(port)], ShortNameRule::cut, NonASCIIRule::blank);
}

// Hours, minutes, seconds and frames with two digits each, right-most digit first, and separators between the pairs.
std::array<std::uint8_t, 8> counterDigits(Duration position) {
    const auto frames = static_cast<std::int64_t>(inSeconds(position) * framesPerSecond);
    const std::int64_t whole = frames / framesPerSecond;
    std::array<std::uint8_t, 8> digits{};
    constexpr std::uint8_t separator = 0x10;
    std::size_t at = 0;
    for (const std::int64_t pair : {frames % framesPerSecond, whole % 60, whole / 60 % 60, whole / 3600 % 100}) {
        digits[at] = static_cast<std::uint8_t>(pair % 10 | (at == 0 ? 0 : separator));
        digits[at + 1] = static_cast<std::uint8_t>(pair / 10);
        at += 2;
    }
    if (digits.back() == 0) digits.back() = SurfacePicture::blankDigit;
    return digits;
}

std::uint16_t sentFader(FaderValue position, int bits) {
    const int unsentBits = 14 - bits;
    return static_cast<std::uint16_t>(std::min(position.raw(), FaderValue::fullScale) >> unsentBits << unsentBits);
}

bool writesAutomation(const SimulatedTrack& track) {
    return track.automation != SimulatedTrack::Automation::read && track.automation != SimulatedTrack::Automation::off;
}

constexpr std::uint8_t darkLED = 0x00;
constexpr std::uint8_t redLED = 0x40;
constexpr std::uint8_t orangeLED = 0x60;

} // namespace

SurfacePicture SimulatedHUIHost::picture(int surface) const {
    if (!dialog) return livePicture(surface);
    SurfacePicture picture = frozen[static_cast<std::size_t>(surface)];
    picture.mainDisplay = asciiText(*dialog, options.nonASCII);
    picture.mainDisplay.resize(SurfacePicture::mainDisplayLength, ' ');
    return picture;
}

SurfacePicture SimulatedHUIHost::livePicture(int surface) const {
    SurfacePicture picture;
    for (int strip = 0; strip < hui_address::stripCountOfSurface; ++strip) {
        const int id = trackOn(surface, strip);
        picture.tracks[static_cast<std::size_t>(strip)] = id;
        if (const SimulatedTrack* track = session.find(id)) paintStrip(picture, surface, strip, *track);
    }
    paintGlobals(picture, surface);
    return picture;
}

void SimulatedHUIHost::paintStrip(SurfacePicture& picture, int surface, int strip, const SimulatedTrack& track) const {
    const auto index = static_cast<std::size_t>(strip);
    picture.displays[index] = displayOf(track, surface, strip);
    picture.faders[index] = sentFader(track.fader, options.faderBits);
    picture.withheldFaders[index] =
        options.faderEcho == FaderEcho::afterRelease && at(surface).touchedTrack[index] != 0;
    picture.rings[index] = ringOf(track, at(surface));

    const bool flash = flasher.isLit();
    const auto led = [&](int port, bool on) { picture.leds[ledIndex(strip, port)] = on; };
    led(hui_address::select, track.selected);
    led(hui_address::mute, track.mute || (session.impliedMute(track) && flash));
    led(hui_address::solo, track.solo);
    picture.autoLEDs[index] = autoLEDOf(track);
    led(hui_address::automation, picture.autoLEDs[index] != darkLED);
    led(hui_address::recordArm, track.recordArmed && (session.transport().recording || flash));
}

void SimulatedHUIHost::paintGlobals(SurfacePicture& picture, int surface) const {
    const bool flash = flasher.isLit();
    const SimulatedTransport& transport = session.transport();
    picture.displays[hui_address::assignDisplay] = session.isOpen() ? assignText(at(surface).assign) : blankDisplay;
    picture.leds[ledIndex(hui_address::assignZone, at(surface).assign)] = session.isOpen();

    const auto led = [&](int zone, int port, bool on) { picture.leds[ledIndex(zone, port)] = session.isOpen() && on; };
    led(hui_address::transportZone, hui_address::stop, !transport.playing);
    led(hui_address::transportZone, hui_address::play, transport.playing);
    led(hui_address::transportZone, hui_address::record, transport.recording || (transport.recordReady && flash));
    led(hui_address::transport2Zone, hui_address::onLine, transport.onLine);
    led(hui_address::transport2Zone, hui_address::loop, transport.loop);
    led(hui_address::transport2Zone, hui_address::quickPunch, transport.quickPunch);
    led(hui_address::counterZone, hui_address::timeCode, true);
    led(hui_address::counterZone, hui_address::rudeSolo, session.anySolo() && flash);
    for (int port = 0; port <= 5; ++port)
        led(hui_address::autoEnableZone, port, true);

    if (!session.isOpen()) return;
    std::string name = asciiText(session.name(), options.nonASCII);
    name.resize(SurfacePicture::mainDisplayLength, ' ');
    picture.mainDisplay = std::move(name);
    picture.counter = counterDigits(transport.position);
}

DisplayText SimulatedHUIHost::displayOf(const SimulatedTrack& track, int surface, int strip) const {
    if (automation.isHeld({surface, strip}) || modeShownUntil.contains(track.id))
        return automationText(track, options.trimWords);
    if (const auto value = valuesShown.find(track.id); value != valuesShown.end())
        return value->second.ofPan ? panText(shownPan(track, at(surface))) : faderText(track.fader);
    return shortName(track.name, options.shortNames, options.nonASCII);
}

// The LED of a mode that can write flashes: with trim between two colours, otherwise between its colour and dark.
std::uint8_t SimulatedHUIHost::autoLEDOf(const SimulatedTrack& track) const {
    using enum SimulatedTrack::Automation;
    if (options.autoLED == AutoLED::unlit || track.automation == off) return darkLED;
    const std::uint8_t green = options.autoLED == AutoLED::green24 ? 0x20 : 0x30;
    if (track.automation == read) return green;
    if (!flasher.isLit()) return track.trim ? green : darkLED;
    return track.automation == write ? redLED : orangeLED;
}

double SimulatedHUIHost::shownPan(const SimulatedTrack& track, const Surface& surface) {
    return surface.rightPan && track.stereo ? track.panRight : track.panLeft;
}

std::uint8_t SimulatedHUIHost::ringOf(const SimulatedTrack& track, const Surface& surface) const {
    if (surface.assign != hui_address::pan) return 0; // the tracks have no sends
    const double pan = shownPan(track, surface);
    const int position = centrePosition + static_cast<int>(std::lround(pan / 20));
    const bool centred = options.ringMarksCentre && std::abs(pan) < 0.5;
    return static_cast<std::uint8_t>((centred ? centreLED : 0) | static_cast<int>(options.panPicture) << 4 | position);
}

bool SimulatedHUIHost::somethingFlashes() const {
    const SimulatedTransport& transport = session.transport();
    if (!session.isOpen()) return false;
    if (session.anySolo() || transport.recordReady) return true;
    for (int surface = 0; surface < options.surfaces; ++surface)
        for (int strip = 0; strip < hui_address::stripCountOfSurface; ++strip) {
            const SimulatedTrack* track = session.find(trackOn(surface, strip));
            if (track != nullptr && (track->recordArmed || writesAutomation(*track))) return true;
        }
    return false;
}

} // namespace lumbrine
