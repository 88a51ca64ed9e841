// Reading the track list: when it is read, what the receiver does with it, and what it logs.
#include "model/testing/banking_host.h"
#include "model/testing/session_columns.h"
#include "ptsl/testing/service_frames.h"
#include "remote/testing/in_words.h"
#include "tests/track_metadata/metadata_test.h"

namespace lumbrine {
namespace {

constexpr const char* unavailable =
    "Track colors: unavailable (Cannot reach Pro Tools' PTSL (not running or disabled)) "
    "→ names are read from the screen, no colors shown";
constexpr const char* connected = "✓ Connected to Pro Tools' official API (track names and colors)";

class RefreshTest : public MetadataTest {};
class JapaneseRefreshTest : public JapaneseMetadataTest {};

TEST_F(RefreshTest, GivesTheMapTheNamesAndColoursOfTheList) {
    serve(threeTracks);
    refresh();
    EXPECT_THAT(namesOf(published.session), ElementsAre("Kick Drum", "Lead Vocals", "Backing Vocals"));
    EXPECT_THAT(column(published.session, &Track::color), ElementsAre(0x102030U, std::nullopt, std::nullopt));
    EXPECT_THAT(bench.lines, ElementsAre("✓ Got 3 track names (full names via PTSL)", connected));
}

TEST_F(RefreshTest, LeavesHiddenTracksOutWhenTheSurfacesDo) {
    serve(R"({"name":"A"},{"name":"H","track_attributes":{"is_hidden":"SetImplicitly"}},{"name":"B"},{"name":"C"})");
    refresh();
    EXPECT_THAT(namesOf(published.session), ElementsAre("A", "B", "C"));
}

TEST_F(RefreshTest, CountsHiddenTracksWhenTheSurfacesDo) {
    bench.setTrackMap({"A", "H", "B"}, 0);
    serve(R"({"name":"A"},{"name":"H","track_attributes":{"is_hidden":"SetImplicitly"}},{"name":"B"})");
    refresh();
    EXPECT_THAT(namesOf(published.session), ElementsAre("A", "H", "B"));
}

TEST_F(RefreshTest, LogsTheLossOfTheServiceOnceAndEachRecovery) {
    bench.streams.stopListening(31416);
    refresh();
    refresh();
    EXPECT_THAT(bench.takeLines(), ElementsAre(unavailable));
    EXPECT_FALSE(bench.state().scripting.ptslOK);

    service::EnvelopeService back(bench.streams);
    back.answers[trackListCommand] = [](const service::Request&) { return service::reply("{}"); };
    refresh();
    refresh();
    const std::string mismatch = "Full names: count mismatch (0, 0 / HUI 3) → keeping 4-char names";
    EXPECT_THAT(bench.takeLines(), ElementsAre(mismatch, connected));

    back.answers[trackListCommand] = [](const service::Request&) { return service::failure("{}"); };
    refresh();
    EXPECT_FALSE(bench.state().scripting.ptslOK);
    back.answers[trackListCommand] = [](const service::Request&) { return service::reply("{}"); };
    refresh();
    EXPECT_THAT(bench.takeLines(), ElementsAre(connected));
}

TEST_F(JapaneseRefreshTest, LogsBothInJapanese) {
    refuse(trackListCommand);
    refresh();
    EXPECT_THAT(bench.takeLines(), ElementsAre("トラックの色: 取得できません（PTSL コマンド失敗: {\"errors\":[]}）→ "
                                               "名前は画面から読み、色は出しません"));
    serve(threeTracks);
    refresh();
    EXPECT_THAT(bench.takeLines(), ElementsAre("✓ トラック名を 3 件取得（フルネーム表示・PTSL）",
                                               "✓ Pro Tools の公式 API に接続（トラック名・色を取得）"));
}

TEST_F(RefreshTest, KeepsWhatItKnowsWhileTheServiceIsAway) {
    serve(threeTracks);
    refresh();
    refuse(trackListCommand);
    refresh();
    EXPECT_THAT(namesOf(published.session), ElementsAre("Kick Drum", "Lead Vocals", "Backing Vocals"));
}

TEST_F(RefreshTest, FollowsAScan) {
    bench.parts().surfaces.startSurfaces();
    bench.setTrackMap({}, -1);
    published.huiConnected = true;
    const BankingHost host(bench, {"Kick", "LdVo", "BkVo"});
    serve(threeTracks);
    bench.run(3s);
    bench.parts().calibration.calibrateBanks(true);
    ASSERT_TRUE(world.runtime.runUntil([this] { return !published.calibrating(); }, 10s));
    world.runtime.runUntilIdle();
    EXPECT_THAT(displaysOf(published.session), ElementsAre("Kick", "LdVo", "BkVo"));
    EXPECT_THAT(namesOf(published.session), ElementsAre("Kick Drum", "Lead Vocals", "Backing Vocals"));
}

TEST_F(RefreshTest, IsNotBegunWhileOneIsUnderWay) {
    service.answer = [](service::ScriptedService::Call&) {}; // never answers
    bench.parts().metadata.refreshFullNames();
    bench.run(1s);
    bench.parts().metadata.refreshFullNames();
    bench.run(1s);
    EXPECT_EQ(service.callCount, 1U); // registering
    bench.run(30s);                   // two attempts of 3 seconds
    const std::size_t calls = service.callCount;
    bench.run(30s);
    EXPECT_EQ(service.callCount, calls);
    bench.parts().metadata.refreshFullNames();
    bench.run(1s);
    EXPECT_GT(service.callCount, calls);
}

TEST_F(RefreshTest, OfAModelThatGoesAwayEndsByItself) {
    service.answer = [](service::ScriptedService::Call&) {};
    bench.parts().metadata.refreshFullNames();
    bench.run(1s);
    const auto gone = bench.model->lifetime();
    bench.model.reset();
    EXPECT_TRUE(world.runtime.runUntil([&gone] { return gone.expired(); }, 30s));
    EXPECT_EQ(bench.streams.openCount(), 0U);
}

// ---- On the way to the client

class RefreshedClientTest : public OwnedModelTest {
protected:
    RefreshedClientTest() {
        bench.setTrackMap({"Kick", "LdVo"}, 0);
        service.answers[3] = [](const service::Request&) {
            return service::reply(
                R"({"track_list":[{"name":"Kick Drum","color":"#102030","track_attributes":{"is_muted":true}},)"
                R"({"name":"Lead Vocals","track_attributes":{"is_input_monitoring_on":"SetExplicitly"}}]})");
        };
    }

    service::EnvelopeService service{bench.streams};
};

TEST_F(RefreshedClientTest, HearsOfNamesColoursAndMonitorsAtOnce) {
    bench.parts().metadata.refreshFullNames();
    world.runtime.runUntilIdle();
    const Lines everything = remote::inWords(phone->tape.take(bench.origin));
    EXPECT_THAT(everything, testing::Contains("0ms full-name 1 Kick Drum"));
    EXPECT_THAT(everything, testing::Contains("0ms full-name 2 Lead Vocals"));
    EXPECT_THAT(everything, testing::Contains(testing::StartsWith("0ms colors 1=#102030 2=none")));
    EXPECT_THAT(everything, testing::Contains(testing::StartsWith("0ms monitors 1=off 2=on 3=off")));
}

TEST_F(RefreshedClientTest, GetsTheTableWithTheNextResend) {
    bench.parts().metadata.refreshFullNames();
    bench.run(700ms);
    EXPECT_THAT(
        remote::inWords(heard(0x1B)),
        ElementsAre("600ms row 1 fader=unknown mute=on solo=off record=off color=#102030 monitor=off select=off "
                    "name=Kick Drum comment=",
                    "600ms row 2 fader=unknown mute=off solo=off record=off color=none monitor=on select=off "
                    "name=Lead Vocals comment="));
}

TEST_F(RefreshedClientTest, IsServedEvery1200MillisecondsWhileProToolsIsThere) {
    bench.surfaceA.pingEverySecond();
    bench.run(600ms);
    EXPECT_EQ(service.requests.size(), 2U); // registering, and the first list
    for (int i = 0; i < 5; ++i) {
        bench.run(1200ms);
        sendNothing();
    }
    EXPECT_EQ(service.requests.size(), 7U);
}

// The client stays, and Pro Tools is there. The next tick that asks for the list comes at once.
class PatientRefreshTest : public RefreshedClientTest {
protected:
    PatientRefreshTest() {
        bench.surfaceA.pingEverySecond();
        bench.run(599ms);
        service.requests.clear();
    }

    void answerLists(const Bytes& answer) {
        service.answers[3] = [this, answer](const service::Request&) {
            asked.push_back(std::chrono::duration_cast<std::chrono::milliseconds>(world.runtime.now() - bench.origin));
            return answer;
        };
    }

    const std::unique_ptr<RepeatingTimer> stay = world.runtime.repeatOnMain(1s, [this] { sendNothing(); });
    std::vector<std::chrono::milliseconds> asked;
};

TEST_F(PatientRefreshTest, AsksABusyHostMoreAndMoreSeldom) {
    answerLists(service::failure(R"({"errors":[{"command_error_type":138}]})"));
    bench.run(100s);
    ASSERT_FALSE(asked.empty());
    std::vector<std::chrono::milliseconds> pauses;
    for (std::size_t i = 1; i < asked.size(); ++i)
        pauses.push_back(asked[i] - asked[i - 1]);
    EXPECT_THAT(pauses, ElementsAre(1200ms, 2400ms, 4800ms, 1600ms, // 10 s after the first one
                                    18800ms, 30000ms, 30000ms));
}

TEST_F(PatientRefreshTest, AsksAgainAfterAnAnswerThatIsNoResult) {
    answerLists(service::failure("", 2)); // in progress
    bench.run(1300ms);
    ASSERT_EQ(asked.size(), 2U);
    EXPECT_EQ(asked[1] - asked[0], 1200ms);
}

TEST_F(PatientRefreshTest, AsksAtOnceWhenANameChanges) {
    answerLists(service::failure(R"({"errors":[{"command_error_type":138}]})"));
    bench.run(30s);
    asked.clear();
    bench.surfaceA.name(0, "Kik ");
    bench.run(1ms);
    EXPECT_EQ(asked.size(), 1U);
    bench.surfaceA.name(0, "Kick");
    bench.run(1ms);
    EXPECT_EQ(asked.size(), 1U); // the tick asks soon enough
}

TEST_F(RefreshedClientTest, IsNotServedDuringAScanNorWithoutAMap) {
    bench.surfaceA.pingEverySecond();
    const auto stay = world.runtime.repeatOnMain(1s, [this] { sendNothing(); });
    bench.state().published.banksUsedBy = BankUser::scan;
    bench.run(3s);
    EXPECT_THAT(service.requests, IsEmpty());
    bench.setTrackMap({}, -1);
    bench.state().scans.lastAutoCalibrationAt = world.runtime.now() + 1h; // no scan
    bench.state().published.banksUsedBy.reset();
    bench.run(3s);
    EXPECT_THAT(service.requests, IsEmpty());
    bench.setTrackMap({"Kick", "LdVo"}, 0);
    bench.run(1200ms);
    EXPECT_EQ(service.requests.size(), 2U);
}

TEST_F(RefreshedClientTest, IsNotServedWithoutProTools) {
    bench.run(3s);
    EXPECT_THAT(service.requests, IsEmpty());
}

} // namespace
} // namespace lumbrine
