// The host's record says which track everything happened to.
#include "platform/virtual/virtual_runtime.h"
#include "simulator/host_record.h"
#include "simulator/testing/host_bench.h"

namespace lumbrine {
namespace {

using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;
using testing::Optional;

class Recorded : public testing::Test {
protected:
    explicit Recorded(SimulatorOptions options = {}) : bench(numberedSession(20), options) {
        bench.host.recordTo(recorder);
        bench.appear();
    }

    VirtualRuntime runtime{{}};
    HostBench bench;
    HostRecorder recorder{runtime, bench.session};
};

MATCHER_P3(Did, kind, strip, track, "") {
    return arg.kind == kind && arg.strip == strip && arg.track == track;
}

TEST_F(Recorded, ActsHaveTheTrackThatTheStripHadThen) {
    bench.press(0, 2, hui_address::mute);
    bench.press(0, hui_address::bankZone, static_cast<int>(BankButton::bankRight));
    bench.press(0, 2, hui_address::mute);
    EXPECT_THAT(recorder.take().acts, ElementsAre(Did(HostAct::Kind::press, 2, 3), Did(HostAct::Kind::press, 2, 11)));
}

TEST_F(Recorded, ActsAreTouchesMovesTurnsAndModesToo) {
    bench.edge(0, 1, hui_address::touch, true);
    bench.receive(0, {0xB0, 0x01, 0x10, 0xB0, 0x21, 0x00});
    bench.receive(0, {0xB0, 0x43, 0x42});
    bench.edge(0, 4, hui_address::automation, true);
    bench.press(0, hui_address::autoModeZone, hui_address::write);
    const HostRecord record = recorder.take();
    EXPECT_THAT(record.acts, ElementsAre(Did(HostAct::Kind::touch, 1, 2), Did(HostAct::Kind::move, 1, 2),
                                         Did(HostAct::Kind::turn, 3, 4), Did(HostAct::Kind::mode, 4, 5)));
    EXPECT_EQ(record.acts[1].detail, 0x10 << 7);
    EXPECT_EQ(record.acts[2].detail, 2);
    EXPECT_EQ(record.acts[3].detail, hui_address::write);
}

TEST_F(Recorded, ShownIsWhatDisplaysSayOfATrack) {
    bench.edge(0, 0, hui_address::automation, true);
    std::vector<ShownTrack> shown = recorder.take().shown;
    ASSERT_EQ(shown.size(), 9u);
    EXPECT_EQ(shown[7].text, "T08");
    EXPECT_EQ(shown[8].text, "Read");
    EXPECT_EQ(shown[8].track, 1);
}

TEST_F(Recorded, NothingIsShownToASurfaceThatHearsNothing) {
    recorder.take();
    bench.host.cut(0, true);
    bench.host.bank(BankButton::bankRight);
    bench.runFor(Duration::zero());
    const HostRecord record = recorder.take();
    EXPECT_THAT(record.shown, IsEmpty());
    EXPECT_EQ(record.banks.back().offset, 8);
}

TEST_F(Recorded, ShownDuringADialogIsWhatTheStripsHadWhenItOpened) {
    bench.host.cut(0, true);
    bench.host.bank(BankButton::bankRight);
    bench.runFor(Duration::zero());
    recorder.take();
    bench.host.setDialog("Save?");
    bench.host.bank(BankButton::bankLeft);
    bench.host.cut(0, false);
    bench.runFor(Duration::zero());
    const std::vector<ShownTrack> shown = recorder.take().shown;
    ASSERT_EQ(shown.size(), 8u);
    EXPECT_EQ(shown[0].text, "T09");
    EXPECT_EQ(shown[0].track, 9);
}

TEST_F(Recorded, BankChangesSayWhetherASurfacePressed) {
    recorder.take();
    recorder.messagesLeft(TimePoint{} + seconds(3));
    bench.press(0, hui_address::bankZone, static_cast<int>(BankButton::channelRight));
    bench.host.scrollTo(5);
    bench.runFor(Duration::zero());
    bench.edit([](SimulatedSession& session) { session.remove(6); });
    const auto pressed = [](const auto& matcher) { return Field(&BankChange::pressed, matcher); };
    EXPECT_THAT(recorder.take().banks,
                ElementsAre(pressed(Optional(TimePoint{} + seconds(3))), pressed(std::nullopt), pressed(std::nullopt)));
}

TEST_F(Recorded, ListsAndStatesFollowTheSession) {
    bench.edit([](SimulatedSession& session) {
        session.setHidden(1, true);
        session.change(2, [](SimulatedTrack& track) { track.mute = true; });
    });
    const HostRecord record = recorder.take();
    ASSERT_EQ(record.lists.size(), 2u);
    EXPECT_EQ(record.lists[0].ids.front(), 1);
    EXPECT_EQ(record.lists[1].ids.front(), 2);
    ASSERT_EQ(record.states.size(), 22u); // twenty to begin with
    EXPECT_TRUE(record.states[21].track.mute);
}

} // namespace
} // namespace lumbrine
