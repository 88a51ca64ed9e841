// The checkers of deadlines see what comes late, and for whom nothing may come any more.
#include "tests/simulation/deadline_checkers.h"
#include "tests/simulation/testing/wire_actions.h"

namespace lumbrine::simulation {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr double never = 1000;

class InTime : public testing::Test {
protected:
    InTime() { jobs.ended = at(100); }

    // Another owner, the second one, from then on.
    void takeOver(double time) { acceptance.changes = {{at(0), {}, "a", 1}, {at(time), "a", "b", 2}}; }

    static SurfaceActions settingAt(double time) {
        return {{edge(time, 3, 4, 1), edge(time + 0.05, 24, 2, 1), edge(time + 0.11, 24, 2, 0),
                 edge(time + 0.26, 3, 4, 0)}};
    }

    void addRun(Job job, double begin, double end) {
        JobRun run;
        run.job = job;
        run.before = run.first = at(begin);
        run.last = run.after = at(end);
        jobs.runs.push_back(run);
    }

    std::vector<std::string> modes(const SurfaceActions& wires) {
        return checkModesInTime(wires, jobs, requests, acceptance, disturbances);
    }
    std::vector<std::string> walks(const SurfaceActions& wires = {}, const std::vector<WalkedFader>& walked = {}) {
        return checkWalksInTime(wires, walked, jobs, requests, acceptance);
    }
    std::vector<std::string> setters(const std::vector<ScriptingSetter>& record) {
        return checkSettersInTime(record, requests, acceptance);
    }

    JobRecord jobs;
    Requests requests;
    Acceptance acceptance;
    std::vector<Stretch> disturbances;
};

TEST_F(InTime, AModeIsSetWithinASecondOnFreeSurfaces) {
    requests.autoModes = {{at(1), 3, 2, 1}};
    EXPECT_THAT(modes(settingAt(2)), IsEmpty());
    EXPECT_THAT(modes(settingAt(2.1)), ElementsAre(HasSubstr("had been free")));
    addRun(Job::seek, 1.2, 2);
    EXPECT_THAT(modes(settingAt(2.1)), IsEmpty());
}

TEST_F(InTime, AModeWaitsForThoseOfASurfaceThatTheHostDoesNotHave) {
    requests.autoModes = {{at(1), 8, 2, 1}, {at(1), 9, 2, 1}, {at(1), 3, 2, 1}};
    EXPECT_THAT(modes(settingAt(2.5)), IsEmpty());
    EXPECT_THAT(modes(settingAt(2.6)), ElementsAre(HasSubstr("had been free")));
}

TEST_F(InTime, AModeIsNotSetAfterTwoSeconds) {
    requests.autoModes = {{at(1), 3, 2, 1}};
    addRun(Job::walk, 1, 3.5);
    EXPECT_THAT(modes(settingAt(3.6)), ElementsAre(HasSubstr("too late")));
    EXPECT_THAT(modes({{}}), IsEmpty());
}

TEST_F(InTime, AModeIsSetForTheClientInControl) {
    requests.autoModes = {{at(1), 3, 2, 1}};
    takeOver(1.5);
    EXPECT_THAT(modes(settingAt(1.5)), IsEmpty());
    EXPECT_THAT(modes(settingAt(1.6)), ElementsAre(HasSubstr("former owner")));
    EXPECT_THAT(modes({{}}), IsEmpty());
}

TEST_F(InTime, AModeThatCouldBeSetIsSet) {
    requests.autoModes = {{at(1), 3, 2, 1}};
    EXPECT_THAT(modes({{}}), ElementsAre(HasSubstr("never set")));
    disturbances = {{at(1.9), at(5)}};
    EXPECT_THAT(modes({{}}), IsEmpty());
    disturbances.clear();
    requests.autoModes.push_back({at(1.5), 3, 4, 1}); // the newest wish wins
    EXPECT_THAT(modes({{edge(1.6, 3, 4, 1), edge(1.65, 24, 4, 1), edge(1.71, 24, 4, 0), edge(1.86, 3, 4, 0)}}),
                IsEmpty());
}

TEST_F(InTime, AWalkBeginsWithinTenSeconds) {
    requests.walks = {
        {.at = at(1), .kind = WalkRequest::Kind::range, .steps = 1, .modePort = -1, .faders = {}, .number = 1}};
    addRun(Job::walk, 11, 12);
    EXPECT_THAT(walks(), IsEmpty());
    addRun(Job::walk, 12, 13); // a second one for one command
    EXPECT_THAT(walks(), ElementsAre(HasSubstr("for nobody")));
    jobs.runs.erase(jobs.runs.begin());
    EXPECT_THAT(walks(), ElementsAre(HasSubstr("for nobody")));
}

TEST_F(InTime, AWalkEndsWithItsClient) {
    requests.walks = {
        {.at = at(1), .kind = WalkRequest::Kind::range, .steps = 1, .modePort = -1, .faders = {}, .number = 1}};
    addRun(Job::walk, 2, 9);
    takeOver(3);
    EXPECT_THAT(walks({{edge(2.9, 3, 4, 1)}}, {{at(3.05), 4, 100}}), IsEmpty());
    EXPECT_THAT(walks({{edge(3.2, 3, 4, 1)}}), ElementsAre(HasSubstr("replaced at")));
    EXPECT_THAT(walks({{}}, {{at(3.2), 4, 100}}), ElementsAre(HasSubstr("replaced at")));
    takeOver(1.5);
    EXPECT_THAT(walks(), ElementsAre(HasSubstr("for nobody")));
}

TEST_F(InTime, ASwitchIsAskedForWithinThreeSecondsByTheClientInControl) {
    const ScriptingSetter mute{at(4), 85, {{"Kick", "Snare"}, true}};
    EXPECT_THAT(setters({mute}), ElementsAre(HasSubstr("for nobody")));
    requests.setters = {{at(1), SetterRequest::Kind::mute, true, 2, 1}};
    EXPECT_THAT(setters({mute}), IsEmpty());
    takeOver(3);
    EXPECT_THAT(setters({mute}), ElementsAre(HasSubstr("former owner")));
    takeOver(never);
    requests.setters[0].at = at(0.5);
    EXPECT_THAT(setters({mute}), ElementsAre(HasSubstr("too late")));
    requests.setters = {{at(3), SetterRequest::Kind::solo, true, 2, 1},
                        {at(3), SetterRequest::Kind::mute, false, 2, 1}};
    EXPECT_THAT(setters({mute}), ElementsAre(HasSubstr("for nobody")));
}

} // namespace
} // namespace lumbrine::simulation
