// The checkers of names, colours and comments find what is wrong.
#include "model/testing/session_columns.h"
#include "tests/simulation/source_checkers.h"

namespace lumbrine::simulation {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

const std::vector<HostTrack> host{{1, "Kick", "Kick In", 0x102030, commentOn(1, 0)},
                                  {7, "Snar", "Snare Top", 0x405060, commentOn(7, 3)}};

ToldTracks rightOnes() {
    return {.at = {},
            .map = {"Kick", "Snar"},
            .full = {"Kick In", "Snare Top"},
            .colors = {0x102030, 0x405060},
            .comments = {commentOn(1, 2), commentOn(7, 0)}};
}

TEST(SourceCheckers, TakeWhatIsRightAndWhatIsNotKnown) {
    EXPECT_THAT(checkToldTracks({rightOnes()}, host), IsEmpty());
    ToldTracks unknown = rightOnes();
    unknown.colors = {std::nullopt, std::nullopt};
    unknown.comments = {"", ""};
    EXPECT_THAT(checkToldTracks({unknown}, host), IsEmpty());
    unknown.full = {"Kick In"}; // as many as another map had
    EXPECT_THAT(checkToldTracks({unknown}, host), IsEmpty());
}

TEST(SourceCheckers, FindWhatIsAnotherTracks) {
    ToldTracks wrong = rightOnes();
    std::swap(wrong.full[0], wrong.full[1]);
    EXPECT_THAT(checkToldTracks({rightOnes(), wrong}, host), SizeIs(2));
    wrong = rightOnes();
    wrong.colors[1] = 0x102030;
    EXPECT_THAT(checkToldTracks({wrong}, host), SizeIs(1));
    wrong = rightOnes();
    wrong.comments[0] = commentOn(17, 0);
    EXPECT_THAT(checkToldTracks({wrong}, host), SizeIs(1));
}

TEST(SourceCheckers, JudgeOnlyARightMap) {
    ToldTracks wrong = rightOnes();
    std::swap(wrong.full[0], wrong.full[1]);
    wrong.map = {"Kick", "Vox"};
    EXPECT_THAT(checkToldTracks({wrong}, host), IsEmpty());
}

TEST(SourceCheckers, FindNamesThatNobodyCanHaveTold) {
    JobRecord jobs;
    jobs.lines.emplace_back(TimePoint{}, "✓ Got 2 track names (full names via AX)");
    jobs.lines.emplace_back(TimePoint{}, "✓ Got 2 track names (full names via PTSL)");
    EXPECT_THAT(checkNamedSources({.scripting = true, .screen = true}, jobs), IsEmpty());
    EXPECT_THAT(checkNamedSources({.scripting = true, .screen = false}, jobs), SizeIs(1));
    EXPECT_THAT(checkNamedSources({.scripting = false, .screen = false}, jobs), SizeIs(2));
}

TEST(SourceCheckers, FindALossThatIsToldTwiceAndAServiceThatIsNotThere) {
    JobRecord jobs;
    jobs.lines.emplace_back(TimePoint{}, "Track colors: unavailable (PTSL response timed out) → names are read");
    EXPECT_THAT(checkToldLosses({.scripting = false}, jobs), IsEmpty());
    jobs.lines.emplace_back(TimePoint{}, "✓ Connected to Pro Tools' official API (track names and colors)");
    jobs.lines.emplace_back(TimePoint{}, "✓ Connected to Pro Tools' official API (track names and colors)");
    EXPECT_THAT(checkToldLosses({.scripting = true}, jobs), IsEmpty());
    EXPECT_THAT(checkToldLosses({.scripting = false}, jobs), SizeIs(1));
    jobs.lines.push_back(jobs.lines.front());
    EXPECT_THAT(checkToldLosses({.scripting = true}, jobs), SizeIs(1));
}

TEST(SourceCheckers, CompareTheClientsRows) {
    Evidence evidence;
    evidence.model.session = Session::of({"Kick", "Snar"});
    setColumn(evidence.model.session, &Track::name, {"Kick In"});
    evidence.comments = {"D112"};
    evidence.picture.session[0].row = remote::TrackRow{.index = 0, .name = "Kick In", .comment = "D112"};
    evidence.picture.session[1].row = remote::TrackRow{.index = 1, .name = "Snar"};
    EXPECT_THAT(checkRows(evidence), IsEmpty());
    evidence.comments = {""};
    evidence.heldElements = 1;
    EXPECT_THAT(checkRows(evidence), SizeIs(2));
    setColumn(evidence.model.session, &Track::name, {"Kick Out"});
    EXPECT_THAT(checkRows(evidence), SizeIs(3));
}

} // namespace
} // namespace lumbrine::simulation
