// A recording of a simulated session, played to a new receiver, gives the same recording. replay_tests --seeds N
// records and replays seeds 1 to N, --seed N that one; --write records the kept evenings again.
#include "blackbox/testing/memory_ring.h"
#include "tests/replay/replay_arguments.h"
#include "tests/replay/taped_session.h"
#include "tools/replay/replay_text.h"

namespace lumbrine::simulation {
namespace {

using blackbox::Kind;
using blackbox::Record;

Bytes shortTape() {
    Scenario scenario = tapedScenario(1);
    scenario.trouble = seconds(5);
    return tapeOf(scenario);
}

// Without its n-th record of a kind.
Bytes without(Bytes tape, Kind kind, int which) {
    const auto reading = blackbox::readRing(tape);
    for (const Record& record : reading->records) {
        if (record.kind != kind || --which > 0) continue;
        tape[blackbox::headerSize + record.position] ^= 1; // the checksum
        break;
    }
    return tape;
}

TEST(Replay, OfASimulatedSessionIsTheSameToTheNanosecond) {
    const ReplayArguments& arguments = replayArguments();
    for (std::uint64_t seed = arguments.firstSeed; seed <= arguments.lastSeed; ++seed) {
        const Bytes tape = tapeOf(tapedScenario(seed));
        const auto replayed = blackbox::replay(tape);
        ASSERT_TRUE(replayed) << replayed.error();
        EXPECT_TRUE(replayed->isEqual()) << "seed " << seed << ": " << textOf(*replayed);
        EXPECT_GT(replayed->recorded.size(), 500U);
    }
}

TEST(Replay, ShowsWhatADatagramThatDidNotComeChanges) {
    const Bytes tape = without(shortTape(), Kind::datagramIn, 5);
    const auto replayed = blackbox::replay(tape);
    ASSERT_TRUE(replayed) << replayed.error();
    EXPECT_FALSE(replayed->isEqual());
    EXPECT_GT(replayed->equal, 10U);
    const std::string text = textOf(*replayed);
    EXPECT_TRUE(text.contains("The replay differs from the recording after ")) << text;
    EXPECT_TRUE(text.contains("\n- ") && text.contains("\n+ ")) << text;
    EXPECT_TRUE(text.contains("MIDI of surface 1: ")) << text;
}

TEST(Replay, ShowsWhatTheReceiverDidNotSendBefore) {
    const Bytes tape = without(shortTape(), Kind::midiOut, 3);
    const auto replayed = blackbox::replay(tape);
    ASSERT_TRUE(replayed) << replayed.error();
    EXPECT_FALSE(replayed->isEqual());
}

TEST(Replay, NeedsTheBeginningOfAProgram) {
    const Bytes tape = without(shortTape(), Kind::anchor, 1);
    const auto replayed = blackbox::replay(tape);
    ASSERT_FALSE(replayed);
    EXPECT_TRUE(replayed.error().contains("beginning")) << replayed.error();
}

TEST(Replay, CanBeDoneOfAProgramThatWasKilledAtOnce) {
    blackbox::MemoryRing ring;
    const blackbox::AnchorHead head{.wallTime = 0, .process = 1};
    ring.writer.write({1, 1}, Kind::anchor, 1, {blackbox::bytesOf(head)});
    const Bytes tape = ring.bytes();
    const auto replayed = blackbox::replay(tape);
    ASSERT_TRUE(replayed);
    EXPECT_TRUE(replayed->recorded.empty());
}

} // namespace
} // namespace lumbrine::simulation
