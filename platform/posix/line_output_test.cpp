#include "platform/posix/line_output.h"

#include <unistd.h>

#include <optional>
#include <thread>

namespace lumbrine {
namespace {

using Lines = std::vector<std::string>;

constexpr int moreThanFits = 5000; // lines of `padding`: a pipe holds 64 KiB
const std::string padding = std::string(100, '.');

class LineOutputTest : public testing::Test {
protected:
    LineOutputTest() {
        EXPECT_EQ(pipe(ends), 0);
        output.emplace(ends[1], [](std::size_t lines) { return std::to_string(lines) + " missing"; });
    }
    ~LineOutputTest() override {
        output.reset();
        close(ends[0]);
        close(ends[1]);
    }

    // The next line; reads no further than its end.
    std::string readLine() {
        std::string line;
        for (char next = 0; read(ends[0], &next, 1) == 1 && next != '\n';)
            line += next;
        return line;
    }

    Lines readLines(int count) {
        Lines lines;
        for (int i = 0; i < count; ++i)
            lines.push_back(readLine());
        return lines;
    }

    void printMoreThanFits() {
        for (int i = 0; i < moreThanFits; ++i)
            output->print(padding);
    }

    // Reads the lines of `printMoreThanFits` that were kept.
    int readTo(const std::string& suffix, std::string& notice) {
        int kept = 0;
        for (notice = readLine(); !notice.ends_with(suffix); notice = readLine())
            ++kept;
        return kept;
    }

    int ends[2];
    std::optional<LineOutput> output;
};

TEST_F(LineOutputTest, WritesLinesInTheirOrder) {
    output->print("✓ one");
    output->print("");
    output->print("二");
    EXPECT_THAT(readLines(3), testing::ElementsAre("✓ one", "", "二"));
}

TEST_F(LineOutputTest, WaitsForNobodyAndTellsHowManyLinesWereDropped) {
    printMoreThanFits(); // would never end if it waited
    std::string notice;
    const int kept = readTo(" missing", notice);
    EXPECT_GE(kept, static_cast<int>(LineOutput::capacity));
    EXPECT_EQ(notice, std::to_string(moreThanFits - kept) + " missing");
    output->print("again");
    EXPECT_EQ(readLine(), "again");
}

TEST_F(LineOutputTest, TellsOfDroppedLinesBeforeTheLineThatFollowsThem) {
    printMoreThanFits();
    readLines(1000); // more than the pipe holds, so some of them have waited
    output->print("the next");
    std::string notice;
    readTo(" missing", notice);
    EXPECT_EQ(readLine(), "the next");
}

TEST_F(LineOutputTest, WritesEverythingThatWaitsBeforeItEnds) {
    for (int i = 0; i < 1000; ++i)
        output->print(padding);
    std::thread reader([this] { EXPECT_THAT(readLines(1000), testing::Each(padding)); });
    output.reset();
    reader.join();
}

TEST_F(LineOutputTest, OutlivesItsReader) {
    close(ends[0]);
    output->print("nobody reads");
    output.reset();
    EXPECT_EQ(pipe(ends), 0); // for the destructor
}

} // namespace
} // namespace lumbrine
