#include "platform/posix/line_output.h"

#include <sys/ioctl.h>
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

    // One more line of `printMoreThanFits`, or a notice: they may come in turns while the pipe takes some lines.
    void count(const std::string& line) {
        if (line == padding) {
            ++kept;
        } else {
            EXPECT_TRUE(line.ends_with(" missing")) << line;
            told += std::stoi(line);
        }
    }

    int ends[2];
    std::optional<LineOutput> output;
    int kept = 0;
    int told = 0;
};

TEST_F(LineOutputTest, WritesLinesInTheirOrder) {
    output->print("✓ one");
    output->print("");
    output->print("二");
    EXPECT_THAT(readLines(3), testing::ElementsAre("✓ one", "", "二"));
}

TEST_F(LineOutputTest, FlushesWhatWaits) {
    for (int i = 0; i < 500; ++i) // fits into the pipe
        output->print(padding);
    output->flush();
    int written = 0;
    ioctl(ends[0], FIONREAD, &written);
    EXPECT_EQ(written, 500 * static_cast<int>(padding.size() + 1));
}

TEST_F(LineOutputTest, WaitsForNobodyAndTellsHowManyLinesWereDropped) {
    printMoreThanFits(); // would never end if it waited
    EXPECT_GT(output->backlog(), LineOutput::capacity);
    while (kept + told < moreThanFits)
        count(readLine());
    EXPECT_EQ(kept + told, moreThanFits);
    EXPECT_GE(kept, static_cast<int>(LineOutput::capacity));
    EXPECT_GT(told, 0);
    output->print("again");
    EXPECT_EQ(readLine(), "again");
}

TEST_F(LineOutputTest, TellsOfDroppedLinesBeforeTheLineThatFollowsThem) {
    printMoreThanFits();
    for (int i = 0; i < 1000; ++i) // more than the pipe holds, so some of them have waited
        count(readLine());
    output->print("the next");
    for (std::string line = readLine(); line != "the next"; line = readLine())
        count(line);
    EXPECT_EQ(kept + told, moreThanFits);
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
