// Every kind of session: the map and the position are right, or said to be unknown; never wrong.
#include "simulator/default_session.h"
#include "tests/bank_map/sessions/session_bench.h"

#include <algorithm>
#include <array>
#include <ostream>

namespace lumbrine {

void PrintTo(const NamedSession& session, std::ostream* stream) {
    *stream << session.name;
}

void PrintTo(Found found, std::ostream* stream) {
    *stream << std::array{"wrong", "unsure", "a map without a position", "right"}[static_cast<std::size_t>(found)];
}

namespace {

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

private:
    static std::size_t number() {
        const auto& all = namedSessions();
        return static_cast<std::size_t>(std::ranges::find(all, GetParam().name, &NamedSession::name) - all.begin());
    }
};

TEST_P(EverySession, IsMappedByItsDisplaysOrSaidToBeUnsure) {
    expectAtLeast(GetParam().unlisted, Witness::none, everyHost);
}

TEST_P(EverySession, IsMappedBesideATrackList) {
    expectAtLeast(GetParam().listed, Witness::service, everyHost);
    expectAtLeast(GetParam().listed, Witness::screen, 1);
}

TEST(TheDemosSession, IsMappedOnEitherWidthUnderEveryDisplayRule) {
    const NamedSession demo{.name = "demo", .session = [] { return defaultSession(40, 1); }};
    for (const int surfaces : {1, 2})
        for (const ShortNameRule shortNames : {ShortNameRule::cut, ShortNameRule::vowels, ShortNameRule::colliding})
            for (const NonASCIIRule nonASCII :
                 {NonASCIIRule::blank, NonASCIIRule::questionMark, NonASCIIRule::huiCharacters}) {
                const HostKind host{.surfaces = surfaces, .shortNames = shortNames, .nonASCII = nonASCII};
                for (const Witness witness : {Witness::service, Witness::screen})
                    EXPECT_GE(judge(demo, host, witness).worst, Found::map) << host.text();
            }
}

std::string nameOf(const testing::TestParamInfo<NamedSession>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Named, EverySession, testing::ValuesIn(namedSessions()), nameOf);

} // namespace
} // namespace lumbrine
