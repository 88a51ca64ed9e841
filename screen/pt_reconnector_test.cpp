#include "screen/testing/reconnector_test.h"

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

using PTReconnectorTest = ReconnectorTest;

TEST_F(PTReconnectorTest, AnOpenDialogGetsItsTabChosenAndItsOKPressedWithoutTheMenu) {
    showMenuBar();
    screen.append(at("app"), "AXWindows", closedDialog());
    EXPECT_EQ(run(), success);
    EXPECT_EQ(presses, (Presses{"0 ms: MIDI Controllers", "600 ms: OK"}));
    EXPECT_EQ(took, 600ms);
}

TEST_F(PTReconnectorTest, AClosedDialogIsOpenedFromTheMenu) {
    showMenuBar();
    whenPressed = [&](Element pressed) {
        if (pressed == at("item")) screen.append(at("app"), "AXWindows", closedDialog());
    };
    EXPECT_EQ(run(), success);
    EXPECT_EQ(presses, (Presses{"0 ms: Peripherals...", "0 ms: MIDI Controllers", "600 ms: OK"}));
    EXPECT_EQ(took, 600ms);
}

TEST_F(PTReconnectorTest, EveryOutcomeIsReportedInBothLanguages) {
    EXPECT_EQ(run(false), "✗ Pro Tools is not running");
    EXPECT_EQ(run(true), "✗ Pro Tools が起動していません");
    EXPECT_EQ(took, 0ms);
    show("application com.avid.ProTools 501 &bare\n");
    EXPECT_EQ(run(false), "✗ \"Peripherals\" menu item not found (unexpected PT menu layout)");
    EXPECT_EQ(run(true), "✗ メニューの「ペリフェラル」が見つかりません（PT のメニュー構成が想定外）");
    EXPECT_EQ(took, 0ms);
    screen.quit(501);
    showMenuBar();
    EXPECT_EQ(run(false), "✗ The Peripherals dialog did not open");
    EXPECT_EQ(run(true), "✗ ペリフェラル画面が開きません");
    EXPECT_EQ(took, 5s);
    screen.set(at("app"), "AXWindows", std::vector{screen.add({{"AXTitle", "ペリフェラル"}})});
    EXPECT_EQ(run(false), "✗ OK button not found (the Peripherals dialog is left open; please press OK manually)");
    EXPECT_EQ(run(true), "✗ OK ボタンが見つかりません（ペリフェラル画面が開いたままです。手で OK を押してください）");
    EXPECT_EQ(took, 0ms);
    screen.set(at("app"), "AXWindows", std::vector{closedDialog()});
    EXPECT_EQ(run(false), "✓ Opened and closed the Peripherals dialog (PT will re-grab the MIDI ports)");
    EXPECT_EQ(run(true), "✓ ペリフェラル画面を開閉しました（PT が MIDI ポートを掴み直します）");
}

TEST_F(PTReconnectorTest, ADialogThatOpensLateIsFoundAtTheNextLook) {
    showMenuBar();
    whenPressed = [&](Element pressed) {
        if (pressed != at("item")) return;
        runtime.postMainAfter(900ms, [&] { screen.append(at("app"), "AXWindows", closedDialog()); });
    };
    EXPECT_EQ(run(), success);
    EXPECT_EQ(presses, (Presses{"0 ms: Peripherals...", "1000 ms: MIDI Controllers", "1600 ms: OK"}));
    EXPECT_EQ(took, 1600ms);
}

TEST_F(PTReconnectorTest, TheLastLookIsTheTwentyFifth) {
    showMenuBar();
    Duration after = 4'700ms;
    whenPressed = [&](Element pressed) {
        if (pressed != at("item")) return;
        runtime.postMainAfter(after, [&] { screen.append(at("app"), "AXWindows", closedDialog()); });
    };
    EXPECT_EQ(run(), success);
    EXPECT_EQ(presses.at(1), "4800 ms: MIDI Controllers");
    EXPECT_EQ(took, 5'400ms);
    screen.unset(at("app"), "AXWindows");
    after = 4'900ms;
    EXPECT_EQ(run(), notOpen);
    EXPECT_EQ(presses, (Presses{"0 ms: Peripherals..."}));
    EXPECT_EQ(took, 5s);
}

TEST_F(PTReconnectorTest, ADialogIsKnownByItsExactTitle) {
    showMenuBar();
    const Element dialog = closedDialog();
    screen.append(at("app"), "AXWindows", screen.add({}));
    screen.append(at("app"), "AXWindows", dialog);
    for (const char* title : {"Peripherals", "ペリフェラル"}) {
        screen.set(dialog, "AXTitle", title);
        EXPECT_EQ(run(), success) << title;
    }
    for (const char* title : {"Peripherals...", "The Peripherals", "peripherals", "ペリフェラル ", ""}) {
        screen.set(dialog, "AXTitle", title);
        EXPECT_EQ(run(), notOpen) << title;
    }
}

TEST_F(PTReconnectorTest, WithoutATabTheOKIsStillPressed) {
    showWindows("    AXWindow AXTitle=\"Peripherals\"\n"
                "      AXRadioButton AXTitle=\"Ethernet Controllers\"\n"
                "      AXButton AXTitle=\"MIDI Controllers\"\n"
                "      AXButton AXTitle=\"OK\"\n");
    EXPECT_EQ(run(), success);
    EXPECT_EQ(presses, Presses{"0 ms: OK"});
    EXPECT_EQ(took, 0ms);
}

TEST_F(PTReconnectorTest, TheTabIsKnownByAPartOfItsTitle) {
    showWindows("    AXWindow AXTitle=\"ペリフェラル\"\n"
                "      AXRadioButton AXTitle=\"同期\"\n"
                "      AXRadioButton &tab\n"
                "      AXButton AXTitle=\"OK\"\n");
    for (const std::string title : {"MIDIコントローラー", "① MIDIコントローラー設定", "MIDI Controllers (HUI)"}) {
        screen.set(at("tab"), "AXTitle", title);
        EXPECT_EQ(run(), success);
        EXPECT_EQ(presses, (Presses{"0 ms: " + title, "600 ms: OK"}));
    }
    screen.set(at("tab"), "AXTitle", "MIDI controllers");
    EXPECT_EQ(run(), success);
    EXPECT_EQ(presses, Presses{"0 ms: OK"});
}

TEST_F(PTReconnectorTest, TabAndOKAreLookedForThreeLevelsDeep) {
    showWindows("    AXWindow AXTitle=\"Peripherals\"\n"
                "      AXGroup\n"
                "        AXGroup\n"
                "          AXRadioButton AXTitle=\"MIDI Controllers\"\n"
                "          AXButton AXTitle=\"OK\"\n");
    EXPECT_EQ(run(), success);
    EXPECT_EQ(presses, (Presses{"0 ms: MIDI Controllers", "600 ms: OK"}));
}

TEST_F(PTReconnectorTest, FourLevelsAreTooDeep) {
    showWindows("    AXWindow AXTitle=\"Peripherals\"\n"
                "      AXGroup\n"
                "        AXGroup\n"
                "          AXGroup\n"
                "            AXRadioButton AXTitle=\"MIDI Controllers\"\n"
                "            AXButton AXTitle=\"OK\"\n");
    EXPECT_EQ(run(), noButton);
    EXPECT_EQ(presses, Presses());
}

TEST_F(PTReconnectorTest, OnlyAnExactOKIsPressed) {
    showWindows("    AXWindow AXTitle=\"Peripherals\"\n"
                "      AXRadioButton AXTitle=\"MIDI Controllers\"\n"
                "      AXButton AXTitle=\"OK...\"\n"
                "      AXButton AXTitle=\"Ok\"\n"
                "      AXCheckBox AXTitle=\"OK\"\n");
    EXPECT_EQ(run(), noButton);
    EXPECT_EQ(presses, Presses{"0 ms: MIDI Controllers"});
    EXPECT_EQ(took, 600ms);
}

TEST_F(PTReconnectorTest, EveryMenuButTheSystemsIsSearchedInOrderByTheBeginningOfItsItems) {
    show("application com.avid.ProTools 501\n"
         "  AXMenuBar=\n"
         "    AXMenuBar\n"
         "      AXMenuBarItem\n"
         "        AXMenu\n"
         "          AXMenuItem AXTitle=\"Peripherals of the system\"\n"
         "      AXMenuBarItem\n"
         "      AXMenuBarItem\n"
         "        AXMenu\n"
         "          AXMenuItem\n"
         "          AXMenuItem AXTitle=\"The Peripherals\"\n"
         "          AXMenuItem AXTitle=\"peripherals\"\n"
         "          AXMenuItem AXTitle=\"More\"\n"
         "            AXMenu\n"
         "              AXMenuItem AXTitle=\"Peripherals in a submenu\"\n"
         "        AXMenu\n"
         "          AXMenuItem AXTitle=\"Peripherals...\"\n"
         "      AXMenuBarItem\n"
         "        AXMenu\n"
         "          AXMenuItem AXTitle=\"ペリフェラル\"\n");
    EXPECT_EQ(run(), notOpen);
    EXPECT_EQ(presses, Presses{"0 ms: Peripherals..."});
}

TEST_F(PTReconnectorTest, TheJapaneseMenuItemIsFound) {
    showMenuBar("ペリフェラル...");
    EXPECT_EQ(run(), notOpen);
    EXPECT_EQ(presses, Presses{"0 ms: ペリフェラル..."});
}

TEST_F(PTReconnectorTest, WithoutAMatchingItemNothingIsPressed) {
    showMenuBar("Hardware...");
    EXPECT_EQ(run(), noMenuItem);
    EXPECT_EQ(presses, Presses());
    EXPECT_EQ(took, 0ms);
}

TEST_F(PTReconnectorTest, WithoutPermissionTheMenuItemIsNotFoundAndNobodyIsPrompted) {
    showMenuBar();
    screen.append(at("app"), "AXWindows", closedDialog());
    screen.setTrusted(false);
    EXPECT_EQ(run(), noMenuItem);
    EXPECT_EQ(screen.prompts(), 0);
    EXPECT_EQ(presses, Presses());
}

TEST_F(PTReconnectorTest, ADialogThatClosesAfterItsTabHasNoOK) {
    showWindows(openDialog);
    whenPressed = [&](Element) { runtime.postMainAfter(599ms, [&] { screen.remove(at("dialog")); }); };
    EXPECT_EQ(run(), noButton);
    EXPECT_EQ(presses, Presses{"0 ms: MIDI Controllers"});
    EXPECT_EQ(took, 600ms);
}

TEST_F(PTReconnectorTest, ADialogThatClosesBetweenTwoLooksIsWaitedFor) {
    showWindows(openDialog);
    screen.watchReads([&, windows = 0](const MemoryScreen::Read& read) mutable {
        // The first look at the windows is for alerts, the second finds the dialog, the third is to press in it.
        if (read.asksFor("AXWindows") && ++windows == 3) screen.remove(at("dialog"));
        return true;
    });
    EXPECT_EQ(run(), notOpen);
    EXPECT_EQ(took, 5s);
}

TEST_F(PTReconnectorTest, AProToolsThatQuitsInTheMiddleIsADialogThatDoesNotOpen) {
    showMenuBar();
    whenPressed = [&](Element) { runtime.postMainAfter(1s, [&] { screen.quit(process); }); };
    EXPECT_EQ(run(), notOpen);
    EXPECT_EQ(took, 5s);
}

TEST_F(PTReconnectorTest, AProToolsThatHangsIsGivenUpAfterTwoMessages) {
    showMenuBar();
    screen.stopAnswering(runtime);
    EXPECT_EQ(run(), noAnswer);
    EXPECT_EQ(took, 2s);
}

TEST_F(PTReconnectorTest, APressThatIsNotAnsweredInTimeHasItsEffect) {
    showMenuBar();
    whenPressed = [&](Element pressed) {
        if (pressed != at("item")) return;
        screen.set(at("app"), "AXWindows", std::vector{closedDialog()});
        screen.answerAfter(runtime, 6s);
        runtime.postMainAfter(999ms, [&] { screen.answerAfter(runtime, 0s); });
    };
    EXPECT_EQ(run(), success);
    EXPECT_EQ(took, 1s + 600ms);
}

// From the press of the menu item on, it hangs for so long; then it shows the dialog.
class SlowDialogTest : public PTReconnectorTest {
protected:
    void showDialogAfter(Duration delay) {
        showMenuBar();
        whenPressed = [this, delay](Element pressed) {
            if (pressed != at("item")) return;
            screen.answerAfter(runtime, 6s);
            runtime.postMainAfter(delay, [this] {
                screen.answerAfter(runtime, 0s);
                screen.set(at("app"), "AXWindows", std::vector{closedDialog()});
            });
        };
    }
};

TEST_F(SlowDialogTest, IsAwaited) {
    showDialogAfter(4s);
    EXPECT_EQ(run(), success);
    // The press, three looks, and 0.6 s after the tab.
    EXPECT_EQ(took, 1s + 3 * 1200ms + 600ms);
}

TEST_F(SlowDialogTest, IsAwaitedForFiveSeconds) {
    showDialogAfter(1min);
    EXPECT_EQ(run(), noAnswer);
    EXPECT_EQ(took, 1s + 5 * 1200ms); // the last look begins before that
}

TEST_F(PTReconnectorTest, ARefusedReadIsToldAsWhatItIs) {
    showMenuBar();
    screen.setRefusing(true);
    EXPECT_EQ(run(), refused);
    EXPECT_TRUE(lastOutcome->refused);
    EXPECT_EQ(screen.reads(), 1U);
}

TEST_F(PTReconnectorTest, TheSlowestProToolsIsLeftInTime) {
    for (const Duration delay : {300ms, 600ms, 999ms, 1000ms}) {
        showWindows("");
        const Element told = screen.add({{"AXRole", "AXStaticText"}, {"AXValue", "HUI"}});
        const Element ok = screen.add({{"AXRole", "AXButton"}, {"AXTitle", "OK"}});
        const Element alert = screen.add({{"AXSubrole", "AXDialog"}, {"AXChildren", std::vector{told, ok}}});
        screen.set(at("app"), "AXWindows", std::vector(60, alert));
        screen.answerAfter(runtime, delay);
        run();
        EXPECT_LE(took, PTReconnector::longest);
        screen.quit(process);
    }
}

TEST_F(PTReconnectorTest, PermissionWithdrawnWhileTheTabOpensIsAnOKThatIsNotFound) {
    showWindows(openDialog);
    whenPressed = [&](Element) { screen.setTrusted(false); };
    EXPECT_EQ(run(), noButton);
    EXPECT_EQ(took, 600ms);
}

} // namespace
} // namespace lumbrine
