#include "blackbox/testing/memory_ring.h"

#include <map>
#include <thread>

namespace lumbrine::blackbox {
namespace {

constexpr int threads = 4;
constexpr int records = 20'000; // of each thread: many times round the ring

// Each thread numbers its records; in the ring, those of one thread stand in their order.
TEST(RingThreads, WriteAtTheSameTimeWithoutMixingTheirRecords) {
    MemoryRing ring(leastRing * 4);
    std::vector<std::thread> writers;
    for (std::uint32_t thread = 0; thread < threads; ++thread)
        writers.emplace_back([&ring, thread] {
            for (int number = 0; number < records; ++number) {
                const std::string text =
                    std::to_string(number) + std::string(static_cast<std::size_t>(number) % 61, 'x');
                ring.writer.write({number, thread}, Kind::log, 0, {textBytes(text)});
            }
        });
    for (std::thread& writer : writers)
        writer.join();

    const Bytes file = ring.bytes();
    const auto reading = readRing(file);
    ASSERT_TRUE(reading);
    EXPECT_GT(reading->records.size(), 1000U);
    std::map<std::uint32_t, std::int64_t> last;
    for (const Record& record : reading->records) {
        EXPECT_EQ(std::stoi(textOf(record)), record.time);
        EXPECT_EQ(textOf(record).size(),
                  std::to_string(record.time).size() + static_cast<std::size_t>(record.time) % 61);
        const auto before = last.find(record.thread);
        EXPECT_TRUE(before == last.end() || record.time > before->second);
        last[record.thread] = record.time;
    }
}

} // namespace
} // namespace lumbrine::blackbox
