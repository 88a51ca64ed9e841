#include "blackbox/testing/memory_ring.h"
#include "tools/replay/agreement.h"
#include "tools/replay/replay_text.h"

#include <utility>

namespace lumbrine::blackbox {
namespace {

// Lines of a log, as they were recorded and as they were replayed some time later.
struct TwoLogs {
    TwoLogs(const std::vector<std::string>& before, const std::vector<std::string>& after) {
        for (const auto& [texts, records, delay] :
             {std::tuple{&before, &replay.recorded, 0}, std::tuple{&after, &replay.replayed, 2'000'000}})
            for (std::size_t i = 0; i < texts->size(); ++i)
                records->push_back({.position = i,
                                    .time = static_cast<std::int64_t>(i) * 1'000'000'000 + delay,
                                    .thread = 1,
                                    .kind = Kind::log,
                                    .channel = 0,
                                    .payload = textBytes((*texts)[i])});
    }

    Replay replay;
};

TEST(Agreement, CountsWhatIsTheSameInItsOrder) {
    const std::vector<std::string> before{"a", "b", "c", "d"};
    const std::vector<std::string> after{"a", "c", "x", "d"};
    const TwoLogs logs(before, after); // the lanes have views into it
    const auto lanes = agreements(logs.replay);

    ASSERT_EQ(lanes.size(), 1U);
    EXPECT_EQ(lanes[0].lane, "log");
    EXPECT_EQ(lanes[0].recorded, 4U);
    EXPECT_EQ(lanes[0].same, 3U);
    EXPECT_EQ(lanes[0].latest, seconds(0.998));
    ASSERT_NE(lanes[0].missing, nullptr);
    EXPECT_EQ(lanes[0].missing->position, 1U);
}

TEST(Agreement, DoesNotLookForWhatCameMuchLater) {
    const std::vector<std::string> before{"a", "b"};
    std::vector<std::string> after(100, "x");
    after.front() = "a";
    after.back() = "b";
    EXPECT_EQ(agreements(TwoLogs(before, after).replay)[0].same, 1U);
}

TEST(ReplayText, ShowsWhatOfARealProgramWasNotReplayed) {
    const std::vector<std::string> before{"one", "two", "three"};
    const std::vector<std::string> after{"one", "three"};
    const std::string text = textOf(TwoLogs(before, after).replay);

    EXPECT_TRUE(text.contains("log: 2 of 3 the same, 2 replayed")) << text;
    EXPECT_TRUE(text.contains("      0.000000  log one\n-     1.000000  log two\n      2.000000  log three\n")) << text;
}

TEST(ReplayText, SaysThatNothingIsMissing) {
    const std::vector<std::string> lines{"one", "two"};
    EXPECT_TRUE(textOf(TwoLogs(lines, lines).replay).contains("All that was recorded was replayed."));
}

} // namespace
} // namespace lumbrine::blackbox
