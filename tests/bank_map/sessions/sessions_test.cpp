// Every kind of session: the map and the position are right, or said to be unknown; never wrong.
#include "tests/bank_map/sessions/session_bench.h"

#include <algorithm>
#include <array>
#include <ostream>
#include <string_view>

namespace lumbrine {

void PrintTo(const NamedSession& session, std::ostream* stream) {
    *stream << session.name;
}

void PrintTo(Found found, std::ostream* stream) {
    *stream << std::array{"wrong", "unsure", "a map without a position", "right"}[static_cast<std::size_t>(found)];
}

namespace {

// What the receiver does not manage yet, and why.
struct NotYet {
    std::string_view session;
    bool listed; // beside a list, or without one
    std::string_view reason;
};

constexpr std::string_view joined = "neighbours of one display where banks meet count as one track";
constexpr std::string_view ended = "a bank that looks like the one before counts as the end of the session";
constexpr std::string_view blankEnd = "blank displays at the end count as no tracks";
constexpr std::string_view sameNames = "what the surfaces show fits the map of the former session too";

constexpr auto notYet = std::to_array<NotYet>({
    {"japanese_template", true, ended},
    {"japanese_middle_banks", true, blankEnd},
    {"equal_24_in_the_middle", true, ended},
    {"template_with_fewer", true, sameNames},
    {"korean", true, "a number that the display leaves out counts as another name"},
    {"japanese_at_the_end", false, blankEnd},
    {"japanese_middle_banks", false, ended},
    {"japanese_real_mix", false, ended},
    {"korean", false, ended},
    {"japanese_every_second", false, ended},
    {"japanese_template", false, ended},
    {"emoji_only", false, ended},
    {"cyrillic_and_latin", false, blankEnd},
    {"two_equal_at_a_banks_end", false, joined},
    {"two_equal_at_the_last_bank", false, joined},
    {"four_equal_across_banks", false, joined},
    {"equal_16_in_32", false, ended},
    {"equal_16_in_32_flat", false, ended},
    {"equal_12_at_the_end", false, joined},
    {"equal_12_at_the_end_flat", false, joined},
    {"equal_24_in_the_middle", false, ended},
    {"all_equal_9", false, ended},
    {"all_equal", false, ended},
    {"all_equal_flat", false, ended},
    {"repeat_8_8_8", false, ended},
    {"repeat_8_8_8_flat", false, ended},
    {"repeat_16_16", false, ended},
    {"repeat_5", false, ended},
    {"repeat_2", false, ended},
    {"voices", false, ended},
    {"audio_template", false, ended},
    {"guitars_and_voices", false, joined},
    {"template_with_fewer", false, sameNames},
});

constexpr std::array witnesses{"the displays", "the service", "the screen"};

class EverySession : public testing::TestWithParam<NamedSession> {
protected:
    void expectAtLeast(Found least, Witness witness, std::size_t hosts) {
        for (const HostKind& host : hostKinds(number(), hosts)) {
            const Judgement judgement = judge(GetParam(), host, witness);
            EXPECT_GE(judgement.worst, least)
                << witnesses[static_cast<std::size_t>(witness)] << ", " << host.text() << ": " << judgement.where;
        }
    }

    static bool isNotYetRight(bool listed) {
        return std::ranges::any_of(
            notYet, [&](const NotYet& one) { return one.session == GetParam().name && one.listed == listed; });
    }

private:
    static std::size_t number() {
        const auto& all = namedSessions();
        return static_cast<std::size_t>(std::ranges::find(all, GetParam().name, &NamedSession::name) - all.begin());
    }
};

TEST_P(EverySession, IsMappedByItsDisplaysOrSaidToBeUnsure) {
    if (!isNotYetRight(false)) expectAtLeast(GetParam().unlisted, Witness::none, everyHost);
}

TEST_P(EverySession, IsMappedBesideATrackList) {
    if (isNotYetRight(true)) return;
    expectAtLeast(GetParam().listed, Witness::service, everyHost);
    expectAtLeast(GetParam().listed, Witness::screen, 1);
}

std::string nameOf(const testing::TestParamInfo<NamedSession>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Named, EverySession, testing::ValuesIn(namedSessions()), nameOf);

} // namespace
} // namespace lumbrine
