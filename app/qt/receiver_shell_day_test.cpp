// The traffic of a day and a night under the window, in virtual time and much denser: nothing piles up.
#include "app/qt/log_view.h"
#include "app/qt/receiver_shell.h"
#include "app/qt/testing/offscreen.h"

#include <malloc.h>

#include <cstdio>

namespace lumbrine {
namespace {

std::size_t heapInUse() {
    return mallinfo2().uordblks;
}

// A surface's left meters as they dance for ten seconds, in one packet.
Bytes dancingMeters(int ten) {
    Bytes packet;
    for (int step = 0; step < 10; ++step)
        for (std::uint8_t strip = 0; strip < 8; ++strip)
            packet.insert(packet.end(), {0xA0, strip, static_cast<std::uint8_t>((ten + step + strip) % 13)});
    return packet;
}

class ReceiverShellDay : public testing::Test {
protected:
    ReceiverShellDay() { desk.open(); }

    // What ten seconds bring: pings, meters that dance, a fader that moves, lines in the log.
    void tenSeconds(int ten) {
        desk.bench.surfaceA.send(dancingMeters(ten));
        desk.bench.surfaceB.send(dancingMeters(ten + 5));
        desk.bench.surfaceA.fader(ten % 8, ten % 100 / 100.0);
        desk.bench.surfaceA.ping();
        desk.bench.surfaceB.ping();
        desk.world.runtime.runFor(100ms);
        desk.app.tell("✓ line " + std::to_string(ten));
        settleToolkit();
        desk.bench.lines.clear();
        desk.bench.surfaceA.presence.clear();
        desk.bench.surfaceB.presence.clear();
        desk.bench.surfaceA.tape.clear();
        desk.bench.surfaceB.tape.clear();
    }

    void hours(int count) {
        for (int i = 0; i < count * 360; ++i)
            tenSeconds(number++);
    }

    ShellBench desk;
    int number = 0;
};

TEST_F(ReceiverShellDay, NeedsNoMoreMemoryAtItsEndThanAfterItsFirstHours) {
    hours(2);
    const std::size_t early = heapInUse();
    hours(22);
    const std::size_t late = heapInUse();
    std::printf("heap in use after 2 hours: %zu bytes, after 24 hours: %zu bytes\n", early, late);
    EXPECT_LE(late, early + 256 * 1024);
    EXPECT_EQ(desk.shell.receiverWindow().logView().blockCount(), 120);
    EXPECT_GT(desk.bench.model->published().pingCount, 8'600);
}

} // namespace
} // namespace lumbrine
