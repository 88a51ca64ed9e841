// The list of all tracks: what it shows, how tracks are looked for, and where a click leads.
#include "app/qt/session_box.h"
#include "app/qt/testing/offscreen.h"
#include "model/testing/banking_host.h"

#include <QApplication>

namespace lumbrine {
namespace {

class SessionBoxTest : public testing::Test {
protected:
    SessionBoxTest() {
        desk.open();
        desk.bench.surfaceA.pingEverySecond();
        desk.bench.learnThatTheHostIsQuick();
        host.show();
        desk.run(20s); // the scan comes to its end
    }

    SessionBox* box() {
        for (QWidget* widget : QApplication::topLevelWidgets())
            if (auto* found = dynamic_cast<SessionBox*>(widget); found != nullptr && found->isVisible()) return found;
        return nullptr;
    }

    std::vector<std::string> listed() {
        std::vector<std::string> names;
        const QAbstractItemModel* rows = box()->findChild<QTableView*>()->model();
        for (int row = 0; row < rows->rowCount(); ++row)
            names.push_back(rows->index(row, 2).data().toString().toStdString());
        return names;
    }

    void searchFor(const QString& text) {
        box()->findChild<QLineEdit*>()->setText(text);
        desk.run(100ms);
    }

    ShellBench desk;
    BankingHost host{desk.bench, numbers(32)};
};

TEST_F(SessionBoxTest, ListsTheTracksThatASearchFinds) {
    buttonNamed(desk.shell.receiverWindow(), "All tracks of the session")->click();
    ASSERT_NE(box(), nullptr);
    EXPECT_EQ(listed(), host.names);
    searchFor("12");
    EXPECT_THAT(listed(), testing::ElementsAre("12"));
    searchFor("");
    EXPECT_EQ(listed(), host.names);
}

TEST_F(SessionBoxTest, BringsTheTrackThatIsClickedToTheSurfaces) {
    desk.app.perform(ScreenAction::session);
    searchFor("17");
    auto* list = box()->findChild<QTableView*>();
    list->clicked(list->model()->index(0, 2));
    desk.run(3s);
    EXPECT_EQ(desk.bench.model->published().bankOffset, 16);
    searchFor("");
    EXPECT_EQ(list->model()->index(16, 1).data().toString(), "1");
}

// What a client's receiver does of its own accord: it asks for the automation modes, which the displays show for a
// moment in the place of names.
TEST_F(SessionBoxTest, LeavesTheWindowSteadyWhileAutomationModesAreProbed) {
    host.modes.assign(32, "Ltch");
    const auto phone = desk.bench.phone("192.168.1.7");
    phone->send({0x01, 0x00});
    desk.run(3s);
    const auto steadyPart = [this] {
        std::vector<std::string> shown;
        const ReceiverView view = desk.app.view();
        shown.push_back(view.position);
        for (const StripView& strip : view.strips)
            shown.push_back(strip.shownName());
        return shown;
    };
    const auto before = steadyPart();
    const auto probed = [this] {
        int count = 0;
        for (const StripState& strip : desk.bench.model->published().strips)
            count += strip.mode != autoModeUnknown ? 1 : 0;
        return count;
    };
    for (int frame = 0; frame < 50; ++frame) {
        desk.run(100ms);
        phone->send({0x01, 0x07, 0x00, 0x00});
        EXPECT_EQ(steadyPart(), before) << "in frame " << frame;
    }
    EXPECT_GE(probed(), 2);
}

} // namespace
} // namespace lumbrine
