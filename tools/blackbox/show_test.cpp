#include "blackbox/testing/memory_ring.h"
#include "tools/blackbox/show.h"

#include <cstdlib>

namespace lumbrine::blackbox {
namespace {

using Texts = std::vector<std::string>;

constexpr std::int64_t second = 1'000'000'000;
constexpr std::int64_t afternoon = 1'763'906'639 * second; // 2025-11-23 14:03:59 UTC

struct ShowTest : testing::Test {
    ShowTest() {
        ::setenv("TZ", "UTC", 1); // NOLINT(concurrency-mt-unsafe)
        ::tzset();
    }

    void anchor(AnchorCause cause, std::int64_t wall) {
        const AnchorHead head{.wallTime = wall, .process = 5};
        ring.writer.write({time, 1}, Kind::anchor, static_cast<std::uint8_t>(cause),
                          {bytesOf(head), textBytes("test")});
    }

    void note(Kind kind, std::uint8_t channel, std::initializer_list<ByteView> payload) {
        ring.writer.write({time, 1}, kind, channel, payload);
    }

    void datagram(Kind kind, const Bytes& bytes) {
        DatagramHead head;
        head.peer = {.host = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF, 10, 0, 0, 7}, .port = 5000};
        note(kind, 0, {bytesOf(head), bytes});
    }

    Texts shown(const ShowFilter& filter = {}) const {
        Texts lines;
        Show show(filter, [&](const std::string& line) { lines.push_back(line); });
        show.add(records(), false);
        return lines;
    }

    std::vector<TimedRecord> records() const {
        file = ring.bytes();
        return timed(readRing(file)->records);
    }

    // A little of everything: one second between the records.
    void anEvening() {
        anchor(AnchorCause::programBegan, afternoon);
        time += second;
        datagram(Kind::datagramIn, {0x01, 0x01, 0x02, 0x3F, 0xFF});
        time += second;
        note(Kind::midiOut, 0, {bytesOf(ResultHead{}), Bytes{0xB0, 0x02, 0x7F}});
        note(Kind::midiOut, 0, {bytesOf(ResultHead{}), Bytes{0xB0, 0x22, 0x7F}});
        time += second;
        note(Kind::midiIn, 1, {Bytes{0x90, 0x00, 0x00}});
        time += second;
        note(Kind::log, 0, {textBytes("♥ ping")});
    }

    MemoryRing ring;
    std::int64_t time = 77 * second;
    mutable Bytes file;
};

TEST_F(ShowTest, PrintsEachRecordInWordsWithItsTimeOfDay) {
    anEvening();
    EXPECT_EQ(shown(),
              (Texts{"--- 2025-11-23", "14:03:59.000000  program began: test, process 5",
                     "14:04:00.000000  10.0.0.7:5000 → fader 3 1.0000", "14:04:01.000000  surface-1 ← fader 3 1.0000",
                     "14:04:02.000000  surface-2 → ping", "14:04:03.000000  log ♥ ping"}));
}

TEST_F(ShowTest, ChoosesByTimeStripAndKind) {
    anEvening();
    EXPECT_EQ(shown({.from = afternoon + 4 * second}), (Texts{"--- 2025-11-23", "14:04:03.000000  log ♥ ping"}));
    EXPECT_EQ(shown({.to = afternoon}).size(), 2U);
    EXPECT_EQ(shown({.strip = 2}), (Texts{"--- 2025-11-23", "14:04:00.000000  10.0.0.7:5000 → fader 3 1.0000",
                                          "14:04:01.000000  surface-1 ← fader 3 1.0000"}));
    EXPECT_EQ(shown({.topics = {Topic::log, Topic::system}}).size(), 3U);
}

TEST_F(ShowTest, TellsThatTheClockJumped) {
    anchor(AnchorCause::programBegan, afternoon);
    time += 10 * second;
    anchor(AnchorCause::periodic, afternoon + 10 * second);
    time += 10 * second;
    anchor(AnchorCause::periodic, afternoon - 40 * second);
    time += 10 * second;
    anchor(AnchorCause::periodic, afternoon + 3600 * second);
    EXPECT_EQ(shown(), (Texts{"--- 2025-11-23", "14:03:59.000000  program began: test, process 5",
                              "--- the clock was set back: 60.0 s",
                              "--- the clock was set forward, or the computer slept: 3630.0 s"}));
}

TEST_F(ShowTest, FollowsARecordingAndPrintsEachRecordOnce) {
    Texts lines;
    Show show({}, [&](const std::string& line) { lines.push_back(line); });
    anchor(AnchorCause::programBegan, afternoon);
    show.add(records(), true);
    show.add(records(), true);
    note(Kind::log, 0, {textBytes("one")});
    show.add(records(), true);
    EXPECT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines.back(), "14:03:59.000000  log one");
}

TEST_F(ShowTest, WaitsOneLookForARecordThatIsBeingWritten) {
    Texts lines;
    Show show({.topics = {Topic::log}},
              [&](const std::string& line) { lines.push_back(line.substr(line.rfind(' ') + 1)); });
    note(Kind::log, 0, {textBytes("one")});
    note(Kind::log, 0, {textBytes("two")});
    note(Kind::log, 0, {textBytes("three")});
    auto withHole = records();
    const TimedRecord two = withHole[1];
    withHole.erase(withHole.begin() + 1);
    show.add(withHole, true);
    EXPECT_EQ(lines.size(), 2U); // the day, and one
    withHole.insert(withHole.begin() + 1, two);
    show.add(withHole, true);
    EXPECT_EQ(Texts(lines.end() - 3, lines.end()), (Texts{"one", "two", "three"}));
}

TEST_F(ShowTest, PassesOverAPlaceThatStaysEmpty) {
    Texts lines;
    Show show({}, [&](const std::string& line) { lines.push_back(line); });
    for (const char* text : {"one", "two", "three"})
        note(Kind::log, 0, {textBytes(text)});
    auto withHole = records();
    withHole.erase(withHole.begin() + 1);
    show.add(withHole, true);
    show.add(withHole, true);
    EXPECT_EQ(lines.size(), 3U);
}

TEST_F(ShowTest, HasLinesForWhatIsCutAndUnknown) {
    for (int kind = 0; kind <= lastKind + 1; ++kind)
        for (std::size_t size = 0; size < 30; ++size)
            note(static_cast<Kind>(kind), 200, {Bytes(size, 0xF0)});
    for (const std::string& line : shown())
        EXPECT_EQ(line.find('\n'), std::string::npos);
}

TEST_F(ShowTest, ReadsTimesWithAndWithoutADay) {
    EXPECT_EQ(wallTimeOf("14:03:59", afternoon + 100 * second), afternoon);
    EXPECT_EQ(wallTimeOf("14:03", afternoon), afternoon - 59 * second);
    EXPECT_EQ(wallTimeOf("2025-11-22 14:03:59", afternoon), afternoon - 86400 * second);
    for (const char* wrong : {"", "noon", "14", "25:00", "14:03:59x", "2025-11-22"})
        EXPECT_EQ(wallTimeOf(wrong, afternoon), std::nullopt) << wrong;
}

} // namespace
} // namespace lumbrine::blackbox
