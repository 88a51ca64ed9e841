#include "tests/bank_map/sessions/named_sessions.h"

#include "simulator/default_session.h"
#include "tests/bank_map/sessions/session_names.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace lumbrine {

namespace {

using Sessions = std::vector<NamedSession>;

// ---- By size

Sessions ofEverySize() {
    Sessions sessions;
    sessions.push_back({.name = "no_tracks", .session = numbered(0), .listed = Found::map, .unlisted = Found::map});
    for (int tracks = 1; tracks <= 17; ++tracks)
        sessions.push_back({.name = std::to_string(tracks) + "_tracks", .session = numbered(tracks)});
    for (const int tracks : {24, 40, 64, 200})
        sessions.push_back({.name = std::to_string(tracks) + "_tracks", .session = numbered(tracks)});
    sessions.push_back({.name = "40_from_the_end", .session = numbered(40), .view = 32});
    sessions.push_back({.name = "40_from_between", .session = numbered(40), .view = 13});
    return sessions;
}

// ---- Names that displays cannot show

Sessions ofOtherScripts() {
    const Names japanese = counted("ボーカル", 18);
    return {
        {.name = "japanese_18", .session = named(japanese), .listed = Found::map, .unlisted = Found::unsure},
        {.name = "japanese_18_flat", .session = flat(japanese), .listed = Found::map, .unlisted = Found::unsure},
        {.name = "japanese_5", .session = named(counted("歌", 5)), .listed = Found::unsure, .unlisted = Found::unsure},
        {.name = "japanese_at_a_banks_end", .session = named(with(some(0, 32), 7, "ボーカル"))},
        {.name = "japanese_at_each_banks_end",
         .session = named(with(with(with(some(0, 32), 7, "歌"), 15, "鼓"), 23, "弦"))},
        {.name = "japanese_at_the_end",
         .session = named(with(some(0, 20), 19, "ボーカル")),
         .listed = Found::map,
         .unlisted = Found::unsure},
        {.name = "japanese_last_bank",
         .session = named(some(0, 16) + counted("歌", 8)),
         .listed = Found::map,
         .unlisted = Found::unsure},
        {.name = "japanese_first_bank",
         .session = named(counted("歌", 8) + some(0, 16)),
         .listed = Found::map,
         .unlisted = Found::unsure},
        {.name = "japanese_middle_banks",
         .session = named(some(0, 8) + counted("歌", 16) + some(8, 20)),
         .listed = Found::map,
         .unlisted = Found::unsure},
        {.name = "japanese_every_second",
         .session = named(repeated({"Vox", "歌"}, 12)),
         .listed = Found::map,
         .unlisted = Found::unsure},
        {.name = "japanese_real_mix",
         .session = [] { return defaultSession(40, 3, {.japaneseNames = true}); },
         .listed = Found::map,
         .unlisted = Found::unsure},
        {.name = "japanese_template",
         .session = flat(counted("オーディオ ", 24)),
         .listed = Found::map,
         .unlisted = Found::unsure},
        {.name = "emoji", .session = named(with(with(some(0, 24), 3, "🎸"), 15, "🥁"))},
        {.name = "emoji_before_names",
         .session = named(
             {"🎸 Gtr", "🥁 Kit", "🎤 Vox", "🎹 Keys", "🎺 Horn", "🎻 Vln", "🎸 Bass", "🎚 Bus", "🎧 Cue", "🔔 Bell"})},
        {.name = "emoji_only",
         .session = named({"🎸", "🥁", "🎤", "🎹", "🎺", "🎻", "🎷", "🪕", "🎧", "🔔"}),
         .listed = Found::map,
         .unlisted = Found::unsure},
        {.name = "accents",
         .session = named({"Übung", "Écho", "Ñandú", "Ärger", "Ölfass", "Noël", "Café", "Señor", "Straße", "Über",
                           "Façade", "Día"})},
        {.name = "cyrillic_and_latin",
         .session = named(repeated({"Вокал"}, 3) + some(0, 10) + counted("Бас ", 4)),
         .listed = Found::map,
         .unlisted = Found::unsure},
        {.name = "korean", .session = named(counted("보컬 ", 12)), .listed = Found::map, .unlisted = Found::unsure},
    };
}

// ---- Names that are alike

Sessions ofLikeNames() {
    const Names kit{"Kick", "Snar", "Hat", "Tom1", "Tom2", "OH L", "OH R", "Room"};
    return {
        {.name = "two_equal_at_a_banks_end", .session = named(with(some(0, 24), 8, some(7, 8).front()))},
        {.name = "two_equal_at_the_last_bank",
         .session = named(with(some(0, 20), 16, some(15, 16).front())),
         .listed = Found::map,
         .unlisted = Found::unsure},
        {.name = "four_equal_across_banks", .session = named(some(0, 6) + equal(4, "Vox") + some(6, 20))},
        {.name = "equal_16_in_32",
         .session = named(some(0, 8) + equal(16, "Vox") + some(8, 16)),
         .listed = Found::map,
         .unlisted = Found::unsure},
        {.name = "equal_16_in_32_flat",
         .session = flat(some(0, 8) + equal(16, "Vox") + some(8, 16)),
         .listed = Found::map,
         .unlisted = Found::unsure},
        {.name = "equal_8_at_the_start",
         .session = named(equal(8, "Vox") + some(0, 12)),
         .listed = Found::map,
         .unlisted = Found::unsure},
        {.name = "equal_12_at_the_end",
         .session = named(some(0, 12) + equal(12, "Vox")),
         .listed = Found::map,
         .unlisted = Found::unsure},
        {.name = "equal_12_at_the_end_flat",
         .session = flat(some(0, 12) + equal(12, "Vox")),
         .listed = Found::map,
         .unlisted = Found::unsure},
        {.name = "equal_24_in_the_middle",
         .session = named(some(0, 3) + equal(24, "Vox") + some(3, 9)),
         .listed = Found::map,
         .unlisted = Found::unsure},
        {.name = "all_equal_8", .session = named(equal(8, "Vox")), .listed = Found::map, .unlisted = Found::map},
        {.name = "all_equal_9", .session = named(equal(9, "Vox")), .listed = Found::map, .unlisted = Found::unsure},
        {.name = "all_equal", .session = named(equal(20, "Vox")), .listed = Found::map, .unlisted = Found::unsure},
        {.name = "all_equal_flat", .session = flat(equal(20, "Vox")), .listed = Found::map, .unlisted = Found::unsure},
        {.name = "repeat_8_8_8", .session = named(repeated(kit, 3)), .listed = Found::map, .unlisted = Found::unsure},
        {.name = "repeat_8_8_8_flat",
         .session = flat(repeated(kit, 3)),
         .listed = Found::map,
         .unlisted = Found::unsure},
        {.name = "repeat_16_16",
         .session = named(repeated(some(0, 16), 2)),
         .listed = Found::map,
         .unlisted = Found::unsure},
        {.name = "repeat_5",
         .session = named(repeated(some(0, 5), 5)),
         .listed = Found::map,
         .unlisted = Found::unsure},
        {.name = "repeat_2",
         .session = named(repeated({"Vox", "Gtr"}, 13)),
         .listed = Found::map,
         .unlisted = Found::unsure},
        {.name = "two_of_one_kit",
         .session = named(kit + some(0, 8) + kit),
         .listed = Found::map,
         .unlisted = Found::unsure},
        {.name = "voices", .session = named(counted("Vox ", 20)), .listed = Found::map, .unlisted = Found::unsure},
        {.name = "audio_template",
         .session = flat(counted("Audio ", 24)),
         .listed = Found::map,
         .unlisted = Found::unsure},
        {.name = "guitars_and_voices",
         .session = named(counted("Guitar ", 6) + counted("Vox ", 12) + some(0, 4)),
         .listed = Found::map,
         .unlisted = Found::unsure},
    };
}

// ---- Names that are something else too

Sessions ofOddNames() {
    return {
        {.name = "names_of_modes",
         .session =
             named({"Read", "Touch", "Latch", "Write", "Off", "Trim", "Vox", "Gtr", "Tch", "Ltch", "Kick", "Snare"})},
        {.name = "names_of_values",
         .session = named({"-6.0", "+3.2", "0", "<100", "100>", "Vox", "-oo", "1", "2", "3"})},
        {.name = "names_of_blanks", .session = named(with(with(some(0, 20), 4, "   "), 15, " "))},
        {.name = "names_with_blanks_before", .session = named(with(with(some(0, 20), 4, "  Vox"), 7, " Gtr"))},
        {.name = "names_of_one_letter", .session = named({"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k"})},
        {.name = "names_of_question_marks", .session = named(with(with(some(0, 20), 4, "????"), 15, "?"))},
        {.name = "long_names",
         .session = named({"Lead Vocal Take 3 comp", "Lead Vocal Double left", "Acoustic Guitar 1", "Electric Guitar 2",
                           "Room Microphone stereo", "Overheads wide", "Bass Direct Injection", "Keyboard Pad 1",
                           "Percussion loop 4"})},
        {.name = "default_40", .session = [] { return defaultSession(40, 1); }},
        {.name = "default_100", .session = [] { return defaultSession(100, 7); }},
    };
}

// ---- What the banks leave out

Sessions withHiddenTracks() {
    const auto hide = [](std::size_t from, std::size_t to) {
        return [from, to](SimulatedSession& session) {
            for (std::size_t i = from; i < to; ++i)
                session.setHidden(idOf(session, i), true);
        };
    };
    return {
        {.name = "folders_closed", .session = [] { return defaultSession(48, 2, {.folders = 5}); }},
        {.name = "hidden_some", .session = edited(some(0, 32), hide(5, 9))},
        {.name = "hidden_all_but_3", .session = edited(some(0, 32), hide(3, 32))},
        {.name = "hidden_all",
         .session = edited(some(0, 12), hide(0, 12)),
         .listed = Found::map,
         .unlisted = Found::map},
    };
}

} // namespace

const std::vector<NamedSession>& namedSessions() {
    static const Sessions all = [] {
        Sessions sessions;
        for (const auto& kind :
             {ofEverySize, ofOtherScripts, ofLikeNames, ofOddNames, withHiddenTracks, changingSessions})
            std::ranges::move(kind(), std::back_inserter(sessions));
        return sessions;
    }();
    return all;
}

} // namespace lumbrine
