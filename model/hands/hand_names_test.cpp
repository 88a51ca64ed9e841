// Hands act on what the client was told.
#include "model/testing/banking_host.h"
#include "model/testing/model_test.h"

namespace lumbrine {
namespace {

class HandNamesTest : public OwnedModelTest {
protected:
    Lines heardOnA() { return bench.heardOn(bench.surfaceA); }

    const Bytes hello{0x01, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00};
    ReceiverState& state = bench.state();
};

TEST_F(HandNamesTest, AFingerIsLetGoWhenProToolsPutsAnotherNameThere) {
    BankingHost host(bench, numbers(20));
    settle();
    phone->send({0x01, 0x02, 0x03});
    settle();
    markAll();
    host.scrollTo(8); // by its user
    settle();
    EXPECT_THAT(heardOnA(), ElementsAre("0ms B0 0F 03", "0ms B0 2F 00"));
    EXPECT_FALSE(state.published.strips[3].touched);
    phone->send({0x01, 0x01, 0x03, 0x20, 0x00});
    settle();
    EXPECT_THAT(heardOnA(), IsEmpty());
    phone->send({0x01, 0x02, 0x03});
    phone->send({0x01, 0x01, 0x03, 0x20, 0x00});
    settle();
    EXPECT_THAT(heardOnA(), testing::SizeIs(4));
}

TEST_F(HandNamesTest, AFingerStaysUnderAValueThatStandsOverTheName) {
    BankingHost host(bench, numbers(20));
    settle();
    phone->send({0x01, 0x02, 0x03});
    settle();
    markAll();
    bench.surfaceA.name(3, "-3.5");
    settle();
    phone->send({0x01, 0x01, 0x03, 0x20, 0x00});
    settle();
    EXPECT_THAT(heardOnA(), testing::SizeIs(2));
}

TEST_F(HandNamesTest, ActsOfAFormerOwnerComeToNothingUntilItIsToldTheNames) {
    const Bytes takeOver{0x01, 0x25};
    const auto other = bench.phone("192.168.1.8");
    other->send(takeOver);
    phone->send(takeOver);
    BankingHost host(bench, numbers(20));
    settle();
    other->send(takeOver);
    markAll();
    other->send({0x01, 0x02, 0x03});
    other->send({0x01, 0x01, 0x03, 0x20, 0x00});
    other->send({0x01, 0x04, 0x04});
    other->send({0x01, 0x09, 0x05, 0x06});
    other->send({0x01, 0x0F, 0x06, 0x02});
    settle();
    EXPECT_THAT(heardOnA(), IsEmpty());
    EXPECT_THAT(bench.takeLines(),
                testing::IsSupersetOf(Lines{"✗ Dropped button press: its track is no longer shown",
                                            "✗ Dropped pan: its track is no longer shown",
                                            "✗ Dropped automation mode: its track is no longer shown"}));
    other->send(hello);
    settle();
    other->send({0x01, 0x04, 0x04});
    settle();
    EXPECT_THAT(heardOnA(), testing::SizeIs(2));
}

TEST_F(HandNamesTest, ATurnByNothingIsASignOfLifeAndNoDroppedPan) {
    const Bytes takeOver{0x01, 0x25};
    const auto other = bench.phone("192.168.1.8");
    other->send(takeOver);
    phone->send(takeOver);
    BankingHost host(bench, numbers(20));
    settle();
    other->send(takeOver);
    settle();
    bench.takeLines();
    markAll();
    other->send({0x01, 0x07, 0x00, 0x00});
    settle();
    EXPECT_THAT(heardOnA(), IsEmpty());
    EXPECT_THAT(bench.takeLines(), IsEmpty());
}

TEST_F(HandNamesTest, HandsActOnSurfacesThatShowNoNames) {
    markAll();
    phone->send({0x01, 0x02, 0x03});
    phone->send({0x01, 0x01, 0x03, 0x20, 0x00});
    settle();
    EXPECT_THAT(heardOnA(), testing::SizeIs(4));
}

TEST_F(HandNamesTest, APanSeekEndsUnderAnotherName) {
    BankingHost host(bench, numbers(20));
    settle();
    phone->send({0x01, 0x09, 0x04, 0x06});
    settle();
    ASSERT_TRUE(state.published.strips[4].panSeek);
    host.scrollTo(8);
    settle();
    EXPECT_FALSE(state.published.strips[4].panSeek);
}

} // namespace
} // namespace lumbrine
