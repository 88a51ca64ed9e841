#include "platform/virtual/memory_midi.h"
#include "platform/virtual/virtual_runtime.h"
#include "simulator/default_session.h"
#include "tools/simulator_shell.h"

namespace lumbrine {
namespace {

class SimulatorShellTest : public testing::Test {
protected:
    SimulatorShell shell(bool terminal) {
        return {proTools, terminal, [this](std::string_view text) { printed += text; }};
    }

    void act(SimulatorShell& on, std::string_view line) {
        on.handle(line);
        runtime.runFor(seconds(1));
    }

    std::string take() { return std::exchange(printed, {}); }

    VirtualRuntime runtime;
    MemoryMIDI midi{runtime};
    SimulatedProTools proTools{runtime, midi, {}, defaultSession(8, 1)};
    std::string printed;
};

TEST_F(SimulatorShellTest, WritesTheStatusOverItselfOnATerminal) {
    SimulatorShell terminal = shell(true);
    EXPECT_EQ(terminal.tickInterval(), seconds(1));
    terminal.tick();
    EXPECT_EQ(take(), "\r\x1B[KA gone | 1-8 of 8 | stopped 0:00 |");
    terminal.tick();
    EXPECT_EQ(take(), ""); // nothing new
    act(terminal, "play");
    terminal.tick();
    EXPECT_EQ(take(), "\r\x1B[KA gone | 1-8 of 8 | playing 0:01 |");
    terminal.end();
    EXPECT_EQ(take(), "\n");
}

TEST_F(SimulatorShellTest, WritesALineForEachChangeElsewhere) {
    SimulatorShell piped = shell(false);
    piped.tick();
    EXPECT_EQ(take(), "A gone | 1-8 of 8 | stopped |\n");
    act(piped, "play");
    piped.tick();
    runtime.runFor(seconds(5));
    piped.tick();
    EXPECT_EQ(take(), "A gone | 1-8 of 8 | playing |\n"); // time alone is no change
    piped.end();
    EXPECT_EQ(take(), "");
}

TEST_F(SimulatorShellTest, AnswersAboveTheStatus) {
    SimulatorShell terminal = shell(true);
    terminal.tick();
    take();
    EXPECT_TRUE(terminal.handle("fly"));
    EXPECT_EQ(take(), "\r\x1B[Kthere is no command fly; help lists them\nA gone | 1-8 of 8 | stopped 0:00 |");
    SimulatorShell piped = shell(false);
    EXPECT_TRUE(piped.handle("fly"));
    EXPECT_EQ(take(), "there is no command fly; help lists them\n");
    EXPECT_FALSE(piped.handle("quit"));
    EXPECT_EQ(take(), "");
}

} // namespace
} // namespace lumbrine
