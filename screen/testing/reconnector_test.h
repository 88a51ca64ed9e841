// For tests of the reconnector: a run in virtual time on a screen in memory, with the times of its presses.
#pragma once

#include "platform/virtual/virtual_runtime.h"
#include "screen/pt_reconnector.h"
#include "screen/testing/screen_test.h"

namespace lumbrine {

class ReconnectorTest : public ScreenTest {
protected:
    using Presses = std::vector<std::string>;

    ReconnectorTest() {
        screen.watchActions([this](Element element, std::string_view action) {
            const auto title = screen.value(element, "AXTitle").value_or("untitled");
            presses.push_back(std::to_string(milliseconds(runtime.now() - began)) +
                              " ms: " + std::get<std::string>(title));
            if (action != "AXPress") presses.back() += " " + std::string(action);
            if (whenPressed) whenPressed(element);
            return true;
        });
    }

    // Runs it and returns the line for the log. `took` is the exact duration, `presses` lists what was pressed.
    std::string run(bool japanese = false) {
        lastOutcome.reset();
        presses.clear();
        began = runtime.now();
        runtime.background(Priority::userInitiated, [this, japanese] {
            lastOutcome = PTReconnector::run(screen, runtime, Bilingual(japanese));
        });
        EXPECT_TRUE(runtime.runUntil([&] { return lastOutcome.has_value(); }, std::chrono::minutes(5)));
        took = runtime.now() - began;
        return lastOutcome ? lastOutcome->line : "no end";
    }

    // A menu bar with the menu item, and no windows.
    void showMenuBar(const std::string& setupItem = "Peripherals...") {
        show("application com.avid.ProTools 501 &app\n"
             "  AXMenuBar=\n"
             "    AXMenuBar\n"
             "      AXMenuBarItem AXTitle=\"Apple\"\n"
             "      AXMenuBarItem AXTitle=\"Setup\"\n"
             "        AXMenu\n"
             "          AXMenuItem AXTitle=\"I/O...\"\n"
             "          AXMenuItem &item AXTitle=\"" +
             setupItem + "\"\n");
    }

    // An application with these windows, and nothing else.
    void showWindows(const std::string& windows) {
        show("application com.avid.ProTools 501 &app\n"
             "  AXWindows:\n" +
             windows);
    }

    static constexpr const char* openDialog = "    AXWindow &dialog AXTitle=\"Peripherals\" AXSubrole=\"AXDialog\"\n"
                                              "      AXTabGroup\n"
                                              "        AXRadioButton AXTitle=\"Synchronization\"\n"
                                              "        AXRadioButton AXTitle=\"MIDI Controllers\"\n"
                                              "      AXButton AXTitle=\"Cancel\"\n"
                                              "      AXButton &ok AXTitle=\"OK\"\n";

    // A Peripherals dialog that is not among the windows yet.
    Element closedDialog() {
        const Element tab = screen.add({{"AXRole", "AXRadioButton"}, {"AXTitle", "MIDI Controllers"}});
        const Element ok = screen.add({{"AXRole", "AXButton"}, {"AXTitle", "OK"}});
        return screen.add({{"AXTitle", "Peripherals"}, {"AXChildren", std::vector{tab, ok}}});
    }

    static std::int64_t milliseconds(Duration duration) {
        return std::chrono::duration_cast<std::chrono::milliseconds>(duration).count();
    }

    static constexpr const char* success =
        "✓ Opened and closed the Peripherals dialog (PT will re-grab the MIDI ports)";
    static constexpr const char* notOpen = "✗ The Peripherals dialog did not open";
    static constexpr const char* noMenuItem = "✗ \"Peripherals\" menu item not found (unexpected PT menu layout)";
    static constexpr const char* noAnswer = "✗ Pro Tools does not answer (it may be busy); try again when it does";
    static constexpr const char* refused = "✗ macOS does not let Lumbrine read Pro Tools' windows";
    static constexpr const char* noButton =
        "✗ OK button not found (the Peripherals dialog is left open; please press OK manually)";

    std::function<void(Element)> whenPressed;
    Presses presses;
    TimePoint began{};
    Duration took{};

    std::optional<PTReconnector::Outcome> lastOutcome;
    VirtualRuntime runtime; // last member: destroying it first ends a run that would never end
};

} // namespace lumbrine
