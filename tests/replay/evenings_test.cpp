// What the receiver does today in sessions that were recorded long ago.
#include "blackbox/support/recording_file.h"
#include "tests/replay/evenings.h"
#include "tools/replay/agreement.h"
#include "tools/replay/replay_text.h"

namespace lumbrine::simulation {
namespace {

struct Sum {
    std::size_t recorded = 0;
    std::size_t same = 0;
};

Sum sumOf(const blackbox::Replay& replay) {
    Sum sum;
    for (const blackbox::Agreement& lane : agreements(replay)) {
        sum.recorded += std::max(lane.recorded, lane.replayed);
        sum.same += lane.same;
    }
    return sum;
}

// A change that is meant may change a little in many evenings. What changes much is either a fault or worth new
// recordings: replay_tests --write.
TEST(Evenings, GoAsTheyWent) {
    std::size_t evenings = 0, equal = 0;
    Sum all;
    for (const auto& entry : std::filesystem::directory_iterator(eveningsFolder())) {
        const auto ring = blackbox::loadRecording(entry.path());
        ASSERT_TRUE(ring) << entry.path() << " " << ring.error();
        const auto replayed = blackbox::replay(*ring);
        ASSERT_TRUE(replayed) << entry.path() << " " << replayed.error();
        const Sum sum = sumOf(*replayed);
        EXPECT_GT(sum.recorded, 100U) << entry.path();
        EXPECT_GE(sum.same * 10, sum.recorded * 9) << entry.path() << "\n" << textOf(*replayed);
        ++evenings;
        if (replayed->isEqual()) ++equal;
        all.recorded += sum.recorded;
        all.same += sum.same;
    }
    EXPECT_GE(evenings, 30U);
    std::cout << equal << " of " << evenings << " evenings are the same, " << all.same << " of " << all.recorded
              << " messages\n";
}

} // namespace
} // namespace lumbrine::simulation
