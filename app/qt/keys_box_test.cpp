#include "app/qt/keys_box.h"
#include "app/qt/testing/offscreen.h"

#include <QCheckBox>
#include <QListWidget>
#include <QPushButton>

namespace lumbrine {
namespace {

class KeysBoxTest : public testing::Test {
protected:
    KeysBoxTest() {
        box.display(page());
        box.show();
        settleToolkit();
    }

    KeysPage page(PairedMode mode = {}) const { return keysPage(keys, mode, TimePoint(seconds(1000)), text); }

    QPushButton& button(const std::string& label) {
        for (auto* each : box.findChildren<QPushButton*>())
            if (each->text().toStdString() == label) return *each;
        ADD_FAILURE() << "no button " << label;
        return *box.findChildren<QPushButton*>().front();
    }

    bool shows(const std::string& letters) const {
        const auto labels = box.findChildren<QLabel*>();
        return std::ranges::any_of(labels, [&](const QLabel* each) { return each->text().toStdString() == letters; });
    }

    const Bilingual text{false};
    const std::string first = "742BCM0SCXPZA154Z02S9P89HC";
    const std::string second = "014D2PF2DBSQQG28T5CY4TQKFF";
    std::vector<KeyUse> keys{{{*PairingKey::parse(first), "Lumbrine"}}, {{*PairingKey::parse(second), "guest"}}};
    std::vector<std::string> calls;
    KeysBox box{{.forget = [this](const std::string& name) { calls.push_back("forget " + name); },
                 .forgetAll = [this] { calls.emplace_back("all"); },
                 .letOnlyPairedIn = [this](bool on) { calls.emplace_back(on ? "paired" : "open"); }},
                nullptr};
};

TEST_F(KeysBoxTest, ShowsTheLettersAndTheCodeOfTheChosenKey) {
    EXPECT_TRUE(shows(first));
    auto* list = box.findChild<QListWidget*>();
    EXPECT_EQ(list->item(1)->text(), "guest, not used since the start");
    list->setCurrentRow(1);
    EXPECT_TRUE(shows(second));
    EXPECT_FALSE(shows(first));
    EXPECT_EQ(cutTexts(box), std::vector<std::string>());
}

TEST_F(KeysBoxTest, KeepsTheChoiceWhenAKeyGoes) {
    box.findChild<QListWidget*>()->setCurrentRow(1);
    keys.erase(keys.begin());
    box.display(page());
    EXPECT_TRUE(shows(second));
    keys.clear();
    box.display(page());
    EXPECT_FALSE(shows(second));
    EXPECT_FALSE(button("Forget").isEnabled());
    EXPECT_FALSE(button("Forget All").isEnabled());
}

TEST_F(KeysBoxTest, TellsWhatTheUserWants) {
    box.findChild<QListWidget*>()->setCurrentRow(1);
    button("Forget").click();
    button("Forget All").click();
    box.findChild<QCheckBox*>()->click();
    EXPECT_EQ(calls, (std::vector<std::string>{"forget guest", "all", "paired"}));
}

TEST_F(KeysBoxTest, CannotSwitchWhatTheEnvironmentDecides) {
    box.display(page({.onlyPaired = true, .isFixed = true}));
    EXPECT_TRUE(box.findChild<QCheckBox*>()->isChecked());
    EXPECT_FALSE(box.findChild<QCheckBox*>()->isEnabled());
    EXPECT_TRUE(shows("LUMBRINE_CLIENTS decides this."));
}

} // namespace
} // namespace lumbrine
