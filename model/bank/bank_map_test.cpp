// Knowing which part of the session the surfaces show.
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

class BankMapTest : public OwnedModelTest {
protected:
    BankMap& bankMap = bench.parts().bankMap;
    ReceiverState& state = bench.state();

    void show(const std::vector<std::string>& names) {
        for (std::size_t i = 0; i < stripCount; ++i)
            state.published.strips[i].name = i < names.size() ? names[i] : "";
    }
};

TEST_F(BankMapTest, AFoundPositionIsToldWithWhatIsThere) {
    bench.setTrackMap({"A", "B", "C"}, -1);
    show({"B", "C"});
    bankMap.relocalize();
    EXPECT_EQ(state.published.bankOffset, 1);
    settle();
    const Lines messages = bench.heardBy(*phone);
    ASSERT_THAT(messages, testing::SizeIs(11));
    EXPECT_EQ(messages[0], "0ms 01 16 00 01 00 03 08");
    for (std::size_t i = 1; i <= 8; ++i)
        EXPECT_THAT(messages[i], testing::StartsWith("0ms 01 18"));
    EXPECT_THAT(messages[9], testing::StartsWith("0ms 01 19"));
    EXPECT_THAT(messages[10], testing::StartsWith("0ms 01 1A"));
}

TEST_F(BankMapTest, APositionThatStaysIsNotToldAgain) {
    bench.setTrackMap({"A", "B", "C"}, 1);
    show({"B", "C"});
    bankMap.relocalize();
    EXPECT_THAT(heard(0x16), IsEmpty());
}

TEST_F(BankMapTest, ALostPositionIsTold) {
    bench.setTrackMap({"A", "B", "C"}, 1);
    show({"X"});
    bankMap.relocalize();
    EXPECT_EQ(state.published.bankOffset, -1);
    EXPECT_THAT(heard(0x16), ElementsAre("0ms 01 16 FF FF 00 03 08"));
}

TEST_F(BankMapTest, AValueOverOneNameForLessThanASecondChangesNoPosition) {
    bench.setTrackMap({"A", "B", "C"}, 0);
    show({"A", "B", "C"});
    bench.surfaceA.name(1, "-6.2");
    bench.run(999ms);
    bench.surfaceA.name(1, "B   ");
    bench.run(1s);
    EXPECT_EQ(state.published.bankOffset, 0);
    EXPECT_THAT(heard(0x16), IsEmpty());
}

TEST_F(BankMapTest, AnotherNameOnOneStripForASecondLosesThePosition) {
    bench.setTrackMap({"A", "B", "C"}, 0);
    show({"A", "B", "C"});
    bench.surfaceA.name(1, "New ");
    bench.run(999ms);
    EXPECT_EQ(state.published.bankOffset, 0);
    bench.run(1ms);
    EXPECT_EQ(state.published.bankOffset, -1);
}

TEST_F(BankMapTest, NothingIsFoundWithoutAMap) {
    show({"A"});
    bankMap.relocalize();
    EXPECT_THAT(heard(0x16), IsEmpty());
}

TEST_F(BankMapTest, ASeekIsNotDisturbed) {
    bench.setTrackMap({"A", "B", "C"}, 0);
    show({"B", "C"});
    state.published.banksUsedBy = BankUser::seek;
    bankMap.relocalize();
    EXPECT_EQ(state.published.bankOffset, 0);
}

TEST_F(BankMapTest, OnlyTheShownStripsAreTheWindow) {
    bench.setTrackMap({"A", "B", "C", "D", "E", "F", "G", "H", "I", "J"}, -1);
    show({"A", "B", "C", "D", "E", "F", "G", "H", "X", "Y"});
    bankMap.relocalize();
    EXPECT_EQ(state.published.bankOffset, 0);
    state.published.winW = 16;
    bankMap.relocalize();
    EXPECT_EQ(state.published.bankOffset, -1);
}

TEST_F(BankMapTest, TheWindowMayEndWithTheSession) {
    std::vector<std::string> names;
    for (char c = 'A'; c <= 'T'; ++c)
        names.emplace_back(1, c);
    bench.setTrackMap(names, -1);
    show({"Q", "R", "S", "T"});
    bankMap.relocalize();
    EXPECT_EQ(state.published.bankOffset, 16);
}

TEST_F(BankMapTest, ABankMoveForgetsHistoriesAndSeeksAndModes) {
    for (std::size_t i = 0; i < stripCount; ++i) {
        for (FlashingLed* led : {&state.published.strips[i].mute, &state.published.strips[i].record})
            *led = {true, world.runtime.now(), world.runtime.now() + 1s, 5};
        state.published.strips[i].panSeek = PanTarget{.position = 4, .id = 1};
        state.published.strips[i].mode = 2;
    }
    bankMap.resetForBankMove();
    for (std::size_t i = 0; i < stripCount; ++i) {
        for (const FlashingLed* led : {&state.published.strips[i].mute, &state.published.strips[i].record}) {
            EXPECT_TRUE(led->rawOn);
            EXPECT_EQ(led->lastEdge, distantPast);
            EXPECT_EQ(led->blinkUntil, distantPast);
            EXPECT_EQ(led->shortStreak, 0);
        }
        EXPECT_FALSE(state.published.strips[i].panSeek);
        EXPECT_EQ(state.published.strips[i].mode, 0);
    }
}

TEST(BankMapDiagnosis, IsPrintedOnlyWhenAskedFor) {
    for (const bool debug : {true, false}) {
        ModelWorld world;
        ModelBench bench(world, {.variables = debug ? std::map<std::string, std::string>{{"QV_DEBUG", ""}}
                                                    : std::map<std::string, std::string>{}});
        bench.setTrackMap({"A", "B"}, -1);
        bench.state().published.strips[0].name = "X";
        bench.parts().bankMap.relocalize();
        const Lines expected =
            debug ? Lines{R"([DIAG] locate=-1 win=8 map(2)=["A", "B"] window=["X", "", "", "", "", "", "", ""])"}
                  : Lines{};
        EXPECT_EQ(bench.lines, expected);
        EXPECT_THAT(bench.model->published().logLines, IsEmpty());
    }
}

} // namespace
} // namespace lumbrine
