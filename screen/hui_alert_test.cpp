#include "screen/testing/reconnector_test.h"

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

// The alerts that Pro Tools shows about lost controllers, and windows that look like one. The screens have no menu bar,
// so each run ends after the alerts.
class HUIAlertTest : public ReconnectorTest {
protected:
    // An alert with this text, and this title on its button.
    Element alert(const std::string& button, const std::vector<std::string>& told) {
        const Element dialog = screen.add({{"AXSubrole", "AXDialog"}});
        for (const std::string& text : told)
            screen.append(dialog, "AXChildren", screen.add({{"AXRole", "AXStaticText"}, {"AXValue", text}}));
        const Element ok = screen.add({{"AXRole", "AXButton"}, {"AXTitle", button}, {"AXParent", dialog}});
        screen.append(dialog, "AXChildren", ok);
        return dialog;
    }

    void showAlerts(const std::vector<Element>& dialogs) {
        const Element app = screen.launch("com.avid.ProTools", process);
        screen.set(app, "AXWindows", dialogs);
    }

    void closeWhenPressed() {
        whenPressed = [this](Element pressed) {
            screen.remove(std::get<Element>(screen.value(pressed, "AXParent").value()));
        };
    }
};

TEST_F(HUIAlertTest, AnAlertIsKnownByItsJoinedTextsAndAnswered) {
    showAlerts({alert("OK", {"Lost communication with", "HUI"})});
    closeWhenPressed();
    EXPECT_EQ(run(), noMenuItem);
    EXPECT_EQ(presses, Presses{"0 ms: OK"});
    EXPECT_EQ(took, 400ms);
}

TEST_F(HUIAlertTest, TextsAreJoinedWithNothingBetween) {
    showAlerts({alert("OK", {"Lost H", "UI #1"})});
    closeWhenPressed();
    run();
    EXPECT_EQ(presses, Presses{"0 ms: OK"});
}

TEST_F(HUIAlertTest, OtherAlertsAreLeftAlone) {
    showAlerts({alert("OK", {"Could not complete the request"}), alert("OK", {"hui", "H U I"}), alert("OK", {})});
    EXPECT_EQ(run(), noMenuItem);
    EXPECT_EQ(presses, Presses());
    EXPECT_EQ(took, 0ms);
}

TEST_F(HUIAlertTest, OnlyADialogsOwnStaticTextsCount) {
    showWindows("    AXWindow AXSubrole=\"AXStandardWindow\"\n"
                "      AXStaticText AXValue=\"HUI\"\n"
                "      AXButton AXTitle=\"OK\"\n"
                "    AXWindow\n"
                "      AXStaticText AXValue=\"HUI\"\n"
                "      AXButton AXTitle=\"OK\"\n"
                "    AXDialog\n"
                "      AXStaticText AXValue=\"HUI\"\n"
                "      AXButton AXTitle=\"OK\"\n"
                "    AXWindow AXSubrole=\"AXDialog\" AXTitle=\"HUI\"\n"
                "      AXStaticText AXTitle=\"HUI\" AXValue=\"H\"\n"
                "      AXStaticText AXValue=?\n"
                "      AXTextField AXValue=\"HUI\"\n"
                "      AXGroup\n"
                "        AXStaticText AXValue=\"HUI\"\n"
                "      - AXValue=\"HUI\"\n"
                "      AXButton AXTitle=\"OK\"\n");
    EXPECT_EQ(run(), noMenuItem);
    EXPECT_EQ(presses, Presses());
}

TEST_F(HUIAlertTest, ATextThatCannotBeReadIsPassedOver) {
    showWindows("    AXWindow AXSubrole=\"AXDialog\"\n"
                "      AXStaticText AXValue=\"H\"\n"
                "      AXStaticText AXValue=?\n"
                "      AXStaticText\n"
                "      AXStaticText AXValue=true\n"
                "      AXStaticText AXValue=\"UI\"\n"
                "      AXGroup\n"
                "        AXGroup\n"
                "          AXButton AXTitle=\"OK\"\n");
    whenPressed = [&](Element) { screen.quit(process); };
    run();
    EXPECT_EQ(presses, Presses{"0 ms: OK"});
}

TEST_F(HUIAlertTest, AnAlertWithoutAnOKIsLeftAlone) {
    showAlerts({alert("Quit", {"HUI"}), alert("OK", {"HUI"})});
    closeWhenPressed();
    EXPECT_EQ(run(), noMenuItem);
    EXPECT_EQ(presses, Presses{"0 ms: OK"});
    EXPECT_EQ(took, 400ms);
}

TEST_F(HUIAlertTest, EachAlertOfAPassTakesItsTime) {
    showAlerts({alert("OK", {"HUI 1"}), alert("OK", {"other"}), alert("OK", {"HUI 2"})});
    closeWhenPressed();
    run();
    EXPECT_EQ(presses, (Presses{"0 ms: OK", "400 ms: OK"}));
    EXPECT_EQ(took, 800ms);
}

TEST_F(HUIAlertTest, AnAlertUnderAnAlertIsAnsweredInTheNextPass) {
    const Element app = screen.launch("com.avid.ProTools", process);
    int left = 3;
    const auto next = [&] { screen.set(app, "AXWindows", std::vector{alert("OK", {"HUI"})}); };
    whenPressed = [&](Element) {
        screen.unset(app, "AXWindows");
        if (--left > 0) next();
    };
    next();
    run();
    EXPECT_EQ(presses, (Presses{"0 ms: OK", "400 ms: OK", "800 ms: OK"}));
    EXPECT_EQ(took, 1200ms);
}

TEST_F(HUIAlertTest, AnAlertThatAppearsOnlyAfterAPassWithoutAnyIsNotWaitedFor) {
    showMenuBar();
    whenPressed = [&](Element) { screen.set(at("app"), "AXWindows", std::vector{alert("OK", {"HUI"})}); };
    EXPECT_EQ(run(), notOpen);
    EXPECT_EQ(presses, Presses{"0 ms: Peripherals..."});
}

TEST_F(HUIAlertTest, AScreenWithoutAlertsIsLookedThroughOnce) {
    showAlerts({alert("OK", {"other"})});
    int looks = 0;
    screen.watchReads([&](const MemoryScreen::Read& read) {
        if (read.asksFor("AXSubrole")) ++looks;
        return true;
    });
    EXPECT_EQ(run(), noMenuItem);
    EXPECT_EQ(looks, 1);
}

TEST_F(HUIAlertTest, AnAlertThatStaysIsAnsweredFiveTimes) {
    showMenuBar();
    screen.set(at("app"), "AXWindows", std::vector{alert("OK", {"HUI"}), closedDialog()});
    EXPECT_EQ(run(), success);
    EXPECT_EQ(presses, (Presses{"0 ms: OK", "400 ms: OK", "800 ms: OK", "1200 ms: OK", "1600 ms: OK",
                                "2000 ms: MIDI Controllers", "2600 ms: OK"}));
    EXPECT_EQ(took, 2600ms);
}

TEST_F(HUIAlertTest, AlertsWithoutEndAreAnsweredFiftyTimes) {
    std::vector<Element> many;
    for (int i = 0; i < 1'000; ++i)
        many.push_back(alert("OK", {"HUI"}));
    showAlerts(many);
    EXPECT_EQ(run(), noMenuItem);
    EXPECT_EQ(presses.size(), 50u);
    EXPECT_EQ(took, 20s);
}

TEST_F(HUIAlertTest, TheLongestRunOfAll) {
    showMenuBar();
    const Element one = alert("OK", {"HUI"});
    screen.set(at("app"), "AXWindows", std::vector(1'000, one));
    whenPressed = [&](Element pressed) {
        if (pressed != at("item")) return;
        runtime.postMainAfter(4'700ms, [&] { screen.append(at("app"), "AXWindows", closedDialog()); });
    };
    EXPECT_EQ(run(), success);
    EXPECT_EQ(took, 25'400ms);
}

} // namespace
} // namespace lumbrine
