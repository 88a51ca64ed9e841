#include "simulator/default_session.h"

#include "simulator/seeded_random.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>
#include <string_view>

namespace lumbrine {

namespace {

using Instrument = SimulatedTrack::MeterProgram::Kind;

struct Family {
    std::string_view japanese;
    std::string_view color;
    Instrument meter;
    double loudness; // dBFS of the loudest track
    int group;
};

constexpr Family drums{"ドラム", "#ffd94c3d", Instrument::drum, -3, 1};
constexpr Family bass{"ベース", "#ff8e5bd0", Instrument::bass, -6, 0};
constexpr Family guitars{"ギター", "#ff3d8ed9", Instrument::melody, -9, 2};
constexpr Family keys{"キーボード", "#ff3dc2a7", Instrument::melody, -12, 0};
constexpr Family strings{"ストリングス", "#ffc9a23d", Instrument::pad, -15, 3};
constexpr Family voices{"ボーカル", "#ffe08ab4", Instrument::melody, -5, 0};
constexpr Family choir{"コーラス", "#ffb06a9a", Instrument::melody, -14, 4};
constexpr Family returns{"リターン", "#ff7a8690", Instrument::pad, -18, 0};
constexpr Family click{"クリック", "#ff4a4a4a", Instrument::silent, -20, 0};

struct Part {
    std::string_view name;
    const Family* family;
    bool stereo;
    double pan; // of a mono track, -100 to 100
    std::string_view comment;
};

constexpr std::array mix{
    Part{"Kick In", &drums, false, 0, "D112"},
    Part{"Kick Out", &drums, false, 0, "U47 FET, low cut"},
    Part{"Snare Top", &drums, false, 0, "SM57"},
    Part{"Snare Btm", &drums, false, 0, "polarity inverted"},
    Part{"HiHat", &drums, false, -40, ""},
    Part{"Tom 1", &drums, false, -25, ""},
    Part{"Tom 2", &drums, false, 10, ""},
    Part{"Floor Tom", &drums, false, 45, ""},
    Part{"OH", &drums, true, 0, "spaced pair"},
    Part{"Room", &drums, true, 0, "ルームマイク"},
    Part{"Bass DI", &bass, false, 0, ""},
    Part{"Bass Amp", &bass, false, 0, "B-15"},
    Part{"A.Gtr", &guitars, true, 0, ""},
    Part{"E.Gtr L", &guitars, false, -80, ""},
    Part{"E.Gtr R", &guitars, false, 80, ""},
    Part{"ギターソロ", &guitars, false, 15, "2番のあと"},
    Part{"Piano", &keys, true, 0, ""},
    Part{"Rhodes", &keys, true, 0, ""},
    Part{"Organ", &keys, true, 0, "Leslie slow"},
    Part{"シンセ", &keys, true, 0, ""},
    Part{"Vln 1", &strings, false, -50, ""},
    Part{"Vln 2", &strings, false, -20, ""},
    Part{"Viola", &strings, false, 20, ""},
    Part{"Cello", &strings, false, 50, ""},
    Part{"Lead Vox", &voices, false, 0, "comp of takes 3, 5, 8"},
    Part{"Vox Dbl", &voices, false, 0, ""},
    Part{"ボーカル ハモ", &voices, false, 12, ""},
    Part{"BGV 1", &choir, false, -70, ""},
    Part{"BGV 2", &choir, false, -30, ""},
    Part{"BGV 3", &choir, false, 30, ""},
    Part{"BGV 4", &choir, false, 70, ""},
    Part{"コーラス", &choir, true, 0, ""},
    Part{"Perc", &drums, true, 0, ""},
    Part{"Shaker", &drums, false, 60, ""},
    Part{"Click", &click, false, 0, "never in the mix"},
    Part{"Plate", &returns, true, 0, "1.8 s"},
    Part{"Hall", &returns, true, 0, ""},
    Part{"Delay", &returns, true, 0, "dotted eighth"},
    Part{"Drum Bus", &returns, true, 0, ""},
    Part{"Mix Bus", &returns, true, 0, ""},
};

// The further tracks of a longer session. Their names begin with a number, as engineers number them.
constexpr std::array more{
    Part{"Gtr Layer", &guitars, false, -35, ""}, Part{"Synth Pad", &keys, true, 0, ""},
    Part{"Strings", &strings, true, 0, ""},      Part{"コーラス", &choir, false, 25, ""},
    Part{"Loop", &drums, true, 0, ""},           Part{"SFX", &returns, true, 0, "効果音"},
    Part{"Brass", &strings, false, 30, ""},      Part{"Choir", &choir, true, 0, ""},
};

std::string nameOf(const Part& part, int number, bool japanese) {
    if (japanese) return std::string(part.family->japanese) + " " + std::to_string(number + 1);
    if (number < static_cast<int>(mix.size())) return std::string(part.name);
    std::array<char, 8> digits{};
    std::snprintf(digits.data(), digits.size(), "%03d ", number + 1);
    return digits.data() + std::string(part.name);
}

SimulatedTrack::Automation automationBy(SeededRandom& chance) {
    using enum SimulatedTrack::Automation;
    constexpr std::array choices{read, read, read, read, touch, latch, off, write};
    return choices[chance.below(choices.size())];
}

SimulatedTrack makeTrack(const Part& part, int number, bool japanese, SeededRandom& chance) {
    SimulatedTrack track;
    track.name = nameOf(part, number, japanese);
    track.comment = part.comment;
    track.color = part.family->color;
    track.stereo = part.stereo;
    track.fader = FaderValue::ofUnit(0.35 + 0.45 * chance.unit());
    track.automation = automationBy(chance);
    track.panLeft = part.stereo ? -100 : part.pan;
    track.panRight = part.stereo ? 100 : 0;
    track.group = part.family->group;
    track.meter = {part.family->meter, part.family->loudness - 6 * chance.unit(),
                   static_cast<std::uint32_t>(chance.below(1'000'000))};
    return track;
}

// Puts each folder before its members. Track ids count from 1.
void makeFolders(std::vector<SimulatedTrack>& tracks, int folders) {
    constexpr std::size_t held = 3;
    std::size_t index = 0;
    for (int folder = 0; folder < folders && index + held < tracks.size(); ++folder, index += held + 1) {
        tracks[index].name = "Folder " + std::to_string(folder + 1);
        tracks[index].isFolder = true;
        tracks[index].closed = folder % 2 == 0;
        for (std::size_t i = 1; i <= held; ++i)
            tracks[index + i].folder = static_cast<int>(index) + 1;
    }
}

} // namespace

SimulatedSession defaultSession(int tracks, std::uint64_t seed, SessionStyle style) {
    constexpr int most = 1000;
    constexpr int fewestWithHidden = 9;
    constexpr std::uint64_t oneHiddenIn = 16;
    SeededRandom chance(seed);
    const int count = std::clamp(tracks, 0, most);
    const int named = static_cast<int>(mix.size());

    std::vector<SimulatedTrack> list;
    for (int number = 0; number < count; ++number) {
        const auto index = static_cast<std::size_t>(number < named ? number : number - named);
        const Part& part = number < named ? mix[index] : more[index % more.size()];
        list.push_back(makeTrack(part, number, style.japaneseNames, chance));
        const bool hides = chance.below(oneHiddenIn) == 0;
        list.back().hidden = hides && count >= fewestWithHidden;
    }
    makeFolders(list, style.folders);
    return SimulatedSession("Evening Light", std::move(list));
}

SimulatedSession sessionOfSameTemplate(const SimulatedSession& session, std::uint64_t seed) {
    SeededRandom chance(seed);
    std::vector<SimulatedTrack> list = session.tracks();
    // Numbered from 1, as a new session has them.
    const auto numberOf = [&](int id) {
        const auto place = std::ranges::find(session.tracks(), id, &SimulatedTrack::id);
        return place == session.tracks().end() ? 0 : static_cast<int>(place - session.tracks().begin()) + 1;
    };
    for (SimulatedTrack& track : list) {
        track.comment.clear();
        track.fader = FaderValue::ofUnit(0.35 + 0.45 * chance.unit());
        track.automation = automationBy(chance);
        track.mute = track.solo = track.recordArmed = track.selected = false;
        track.folder = numberOf(track.folder);
    }
    return SimulatedSession(session.name() + " 2", std::move(list));
}

} // namespace lumbrine
