// The program on a desktop: its icon, its menu, its window, its one instance, and its end.
#include "tests/desktop/desktop.h"
#include "tests/end_to_end/client_socket.h"
#include "tests/end_to_end/deadlines.h"
#include "tests/end_to_end/receiver_process.h"
#include "tests/end_to_end/simulator_process.h"
#include "tests/interop/private_jack.h"
#include "tests/interop/waiting.h"

#include <csignal>
#include <filesystem>

namespace lumbrine::desktop {
namespace {

using interop::ChildProcess;
using interop::CommandResult;
using interop::PrivateJack;
using interop::runCommand;
using interop::waitUntil;
using testing::HasSubstr;
using testing::StartsWith;

const std::string program = LUMBRINE_BIN_DIR "/lumbrine";
const std::string title = "Lumbrine — Receiver";

// Everything of a program that has shown its window.
class RunningProgram {
public:
    explicit RunningProgram(Desktop& desktop, const std::vector<std::string>& command = {program})
        : desktop(desktop), environment(environmentOf(folder)), process(command, {.environment = environment}) {}

    bool isShown() const {
        return waitUntil([this] { return desktop.window(title).has_value(); });
    }
    bool isHidden() const {
        return waitUntil([this] { return !desktop.window(title).has_value(); });
    }

    void closeWindow() const {
        ASSERT_TRUE(desktop.screen().focus(desktop.window(title).value()));
        desktop.press({"ctrl+w"});
    }

    // Opens the icon's menu and goes through it by keys; the last one chooses. An open menu grabs the pointer and the
    // keyboard: a click before the last menu has released them is lost, and so are keys before this one has them.
    void choose(const std::vector<std::string>& keys) const {
        const auto isOpen = [this] { return desktop.popup() && desktop.screen().pointerIsTaken(); };
        const auto isClosed = [this] { return !desktop.popup() && !desktop.screen().pointerIsTaken(); };
        ASSERT_TRUE(waitUntil(isClosed));
        desktop.click(desktop.icon().value().place, 3);
        ASSERT_TRUE(waitUntil(isOpen));
        desktop.press(keys);
        ASSERT_TRUE(waitUntil(isClosed));
    }

    bool launchesAtLogin() const {
        return std::filesystem::exists(folder.path / "autostart/com.tarnwick.lumbrine.desktop");
    }

    Desktop& desktop;
    const interop::TemporaryFolder folder;
    const std::map<std::string, std::string> environment;
    ChildProcess process;

private:
    static std::map<std::string, std::string> environmentOf(const interop::TemporaryFolder& folder) {
        std::map<std::string, std::string> variables = end_to_end::environmentFor({.port = end_to_end::freePort()});
        variables["XDG_CONFIG_HOME"] = folder.path.string();
        return variables;
    }
};

TEST(LumbrineOnADesktop, HasAnIconThatIsDimWithoutProTools) {
    const PrivateJack jack;
    Desktop desktop;
    const RunningProgram lumbrine(desktop);
    // The status area may give the icon another place when it has seen it.
    const auto contrast = [&desktop] {
        const auto icon = desktop.icon();
        return icon ? desktop.screen().contrast(icon->place) : 0.0;
    };
    ASSERT_TRUE(waitUntil([&] { return contrast() > 0.1; })) << lumbrine.process.output();
    const double dim = contrast();

    double full = 0;
    {
        end_to_end::SimulatorProcess proTools({"--tracks", "8", "--no-scripting"});
        EXPECT_TRUE(waitUntil([&] { return contrast() > dim * 1.5; })) << lumbrine.process.output();
        full = contrast();
        proTools.end();
    }
    EXPECT_NEAR(dim / full, 0.45, 0.06);
    EXPECT_TRUE(waitUntil([&] { return contrast() < dim * 1.2; }));
    EXPECT_NEAR(contrast() / full, 0.45, 0.06);
}

TEST(LumbrineOnADesktop, CanBeUsedByTheMenuOfItsIcon) {
    const PrivateJack jack;
    Desktop desktop;
    RunningProgram lumbrine(desktop);
    ASSERT_TRUE(lumbrine.isShown()) << lumbrine.process.output();
    ASSERT_TRUE(waitUntil([&] { return desktop.icon().has_value(); }));

    lumbrine.closeWindow();
    ASSERT_TRUE(lumbrine.isHidden());
    EXPECT_TRUE(lumbrine.process.running());
    lumbrine.choose({"Down", "Down", "Down", "Return"}); // past the two status lines: Show Window
    EXPECT_TRUE(lumbrine.isShown());
    EXPECT_THAT(lumbrine.process.output(), testing::Not(HasSubstr("no status area")));

    lumbrine.choose({"Down", "Down", "Down", "Down", "Down", "Return"}); // Launch at Login
    EXPECT_TRUE(waitUntil([&] { return lumbrine.launchesAtLogin(); }));
    lumbrine.choose({"Down", "Down", "Down", "Down", "Down", "Return"});
    EXPECT_TRUE(waitUntil([&] { return !lumbrine.launchesAtLogin(); }));

    lumbrine.choose({"Up", "Return"}); // Quit
    EXPECT_EQ(lumbrine.process.wait(interop::patience), 0) << lumbrine.process.output();
}

TEST(LumbrineOnADesktop, ShowsItsWindowOnAClickAndWhenItIsStartedAgain) {
    const PrivateJack jack;
    Desktop desktop;
    RunningProgram lumbrine(desktop);
    ASSERT_TRUE(lumbrine.isShown()) << lumbrine.process.output();
    ASSERT_TRUE(waitUntil([&] { return desktop.icon().has_value(); }));

    lumbrine.closeWindow();
    ASSERT_TRUE(lumbrine.isHidden());
    desktop.click(desktop.icon().value().place, 1);
    EXPECT_TRUE(lumbrine.isShown());

    lumbrine.closeWindow();
    ASSERT_TRUE(lumbrine.isHidden());
    ChildProcess second({program}, {.environment = lumbrine.environment});
    EXPECT_EQ(second.wait(interop::patience), 0);
    EXPECT_EQ(second.output(), "");
    EXPECT_TRUE(lumbrine.isShown());
}

TEST(LumbrineOnADesktop, CanBeUsedByKeyboardAlone) {
    const PrivateJack jack;
    Desktop desktop;
    const RunningProgram lumbrine(desktop);
    ASSERT_TRUE(lumbrine.isShown()) << lumbrine.process.output();
    const auto says = [&](const std::string& line, int times) {
        return waitUntil([&] {
            const std::string all = lumbrine.process.output();
            int found = 0;
            for (auto at = all.find(line); at != std::string::npos; at = all.find(line, at + 1))
                ++found;
            return found == times;
        });
    };
    const std::string reconnecting = "This feature requires Accessibility permission";
    const std::string sweeping = "▶ Test: sending track 1 sweep";
    ASSERT_TRUE(desktop.screen().focus(desktop.window(title).value()));
    desktop.press({"Tab", "Tab", "Tab", "space"}); // past all tracks and the box about the program, then press the next
    EXPECT_TRUE(says(reconnecting, 1));
    desktop.press({"Tab", "space"}); // the next one
    EXPECT_TRUE(says(sweeping, 1));
    desktop.press({"alt+r"});
    EXPECT_TRUE(says(reconnecting, 2));
}

TEST(LumbrineOnADesktop, StartsWithoutItsWindowWhenItIsStartedAtLogin) {
    const PrivateJack jack;
    Desktop desktop;
    const RunningProgram lumbrine(desktop, {program, "--hidden"});
    ASSERT_TRUE(waitUntil([&] { return desktop.icon().has_value(); })) << lumbrine.process.output();
    EXPECT_TRUE(waitUntil([&] { return lumbrine.process.output().find("UDP") != std::string::npos; }));
    EXPECT_FALSE(desktop.window(title).has_value());
    lumbrine.choose({"Down", "Down", "Down", "Return"}); // Show Window
    EXPECT_TRUE(lumbrine.isShown());
}

TEST(LumbrineOnADesktop, SaysThatItGoesOnWhereThereIsNoStatusArea) {
    const PrivateJack jack;
    Desktop desktop(false);
    RunningProgram lumbrine(desktop);
    ASSERT_TRUE(lumbrine.isShown()) << lumbrine.process.output();
    lumbrine.closeWindow();
    ASSERT_TRUE(lumbrine.isHidden());
    ASSERT_TRUE(waitUntil([&] { return desktop.popup().has_value(); })); // a dialog
    EXPECT_THAT(lumbrine.process.output(), HasSubstr("This desktop has no status area: start Lumbrine again"));
    ASSERT_TRUE(desktop.screen().focus(desktop.popup().value()));
    desktop.press({"Return"});
    EXPECT_TRUE(waitUntil([&] { return !desktop.popup().has_value(); }));
    EXPECT_TRUE(lumbrine.process.running());
    EXPECT_EQ(runCommand({program}).status, 0);
    EXPECT_TRUE(lumbrine.isShown());
}

TEST(LumbrineOnADesktop, EndsOnSignalsAndOnItsKeys) {
    const PrivateJack jack;
    Desktop desktop;
    for (const int signal : {SIGINT, SIGTERM, 0}) {
        RunningProgram lumbrine(desktop);
        ASSERT_TRUE(lumbrine.isShown()) << lumbrine.process.output();
        if (signal != 0) {
            lumbrine.process.signal(signal);
        } else {
            ASSERT_TRUE(desktop.screen().focus(desktop.window(title).value()));
            desktop.press({"ctrl+q"});
        }
        EXPECT_EQ(lumbrine.process.wait(end_to_end::ending), 0) << lumbrine.process.output();
    }
}

TEST(LumbrineOnADesktop, ShowsItsWindowAndEndsBesideAJACKServerThatStandsStill) {
    PrivateJack jack;
    Desktop desktop;
    jack.freeze();
    RunningProgram lumbrine(desktop);
    EXPECT_TRUE(lumbrine.isShown());
    EXPECT_TRUE(waitUntil([&] { return lumbrine.process.output().find("✓ UDP listening") != std::string::npos; }));
    EXPECT_THAT(lumbrine.process.output(), HasSubstr("✗ MIDI failed"));
    lumbrine.process.signal(SIGTERM);
    EXPECT_EQ(lumbrine.process.wait(end_to_end::ending), 0);
    jack.kill();
}

TEST(Lumbrine, SaysThatThereIsNoDisplay) {
    const auto startIn = [](const std::string& language) {
        return runCommand({"env", "-u", "WAYLAND_DISPLAY", "-u", "QT_QPA_PLATFORM", "DISPLAY=:4711",
                           "LANGUAGE=" + language, program});
    };
    EXPECT_EQ(startIn("en").status, 1);
    EXPECT_EQ(startIn("en").output, "lumbrine: no display; lumbrine-headless needs none\n");
    EXPECT_EQ(startIn("ja").output, "lumbrine: ディスプレイがありません。lumbrine-headless なら不要です\n");
}

TEST(Lumbrine, AnswersQuestionsAboutItselfWithoutADesktop) {
    const CommandResult help = runCommand({program, "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.output, StartsWith("Usage: lumbrine [--hidden]\n"));
    const CommandResult version = runCommand({program, "--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.output, "lumbrine " LUMBRINE_VERSION "\n");
    EXPECT_EQ(runCommand({program, "--loud"}).status, 2);
}

} // namespace
} // namespace lumbrine::desktop
