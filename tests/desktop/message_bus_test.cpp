// The program on a desktop whose status area and whose starter talk to it by the message bus.
#include "tests/desktop/desktop.h"
#include "tests/desktop/status_notifier_host.h"
#include "tests/end_to_end/client_socket.h"
#include "tests/end_to_end/receiver_process.h"
#include "tests/end_to_end/simulator_process.h"
#include "tests/interop/private_jack.h"

#include <filesystem>

namespace lumbrine::desktop {
namespace {

using testing::ElementsAre;

class LumbrineOnTheMessageBus : public testing::Test {
protected:
    explicit LumbrineOnTheMessageBus(bool withStatusArea = true) {
        if (withStatusArea) host.open();
        lumbrine = std::make_unique<interop::ChildProcess>(std::vector<std::string>{LUMBRINE_BIN_DIR "/lumbrine"},
                                                           interop::ChildProcess::Setup{.environment = environment()});
    }

    std::map<std::string, std::string> environment() const {
        std::map<std::string, std::string> variables = end_to_end::environmentFor({.port = end_to_end::freePort()});
        variables["XDG_CONFIG_HOME"] = folder.path.string();
        variables["DBUS_SESSION_BUS_ADDRESS"] = bus.address();
        return variables;
    }

    bool shows(bool window) {
        return bus.waitUntil([&] { return desktop.window("Lumbrine — Receiver").has_value() == window; });
    }

    void closeWindow() {
        ASSERT_TRUE(desktop.screen().focus(desktop.window("Lumbrine — Receiver").value()));
        desktop.press({"ctrl+w"});
        ASSERT_TRUE(shows(false)) << lumbrine->output();
    }

    // What the menu has under that title: one entry, or none.
    std::vector<StatusNotifierHost::MenuEntry> entries(const std::string& title) const {
        std::vector<StatusNotifierHost::MenuEntry> found = host.menu();
        std::erase_if(found, [&](const auto& entry) { return entry.title != title; });
        return found;
    }

    const interop::PrivateJack jack;
    const Desktop desktop{false};
    const interop::TemporaryFolder folder;
    MessageBus bus;
    StatusNotifierHost host{bus};
    std::unique_ptr<interop::ChildProcess> lumbrine;
};

// As at login, when programs may start before the desktop's panel does.
class LumbrineBeforeTheStatusArea : public LumbrineOnTheMessageBus {
protected:
    LumbrineBeforeTheStatusArea() : LumbrineOnTheMessageBus(false) {}
};

TEST_F(LumbrineOnTheMessageBus, HasAnIconThatIsDimWithoutProTools) {
    ASSERT_TRUE(bus.waitUntil([&] { return host.hasIcon(); })) << lumbrine->output();
    EXPECT_NEAR(host.opacity(), 0.45 * 255, 2);
    EXPECT_EQ(host.toolTip(), "Lumbrine — Pro Tools: Waiting");
    ASSERT_EQ(entries("Reconnect to PT").size(), 1u);
    EXPECT_TRUE(entries("Reconnect to PT").front().enabled);
    {
        end_to_end::SimulatorProcess proTools({"--tracks", "8", "--no-scripting"});
        EXPECT_TRUE(bus.waitUntil([&] { return host.opacity() == 255; })) << lumbrine->output();
        EXPECT_FALSE(entries("Reconnect to PT").front().enabled);
        proTools.end();
    }
    EXPECT_TRUE(bus.waitUntil([&] { return host.opacity() < 120; }));
}

TEST_F(LumbrineOnTheMessageBus, CanBeUsedByTheMenuOfItsIcon) {
    ASSERT_TRUE(bus.waitUntil([&] { return host.hasIcon(); })) << lumbrine->output();
    ASSERT_TRUE(shows(true));
    std::vector<std::string> titles;
    for (const auto& entry : host.menu())
        titles.push_back(entry.title);
    EXPECT_THAT(titles, ElementsAre("Pro Tools: Waiting", "iPhone / iPad: Waiting", "-", "Show Window",
                                    "Reconnect to PT", "Launch at Login", "-", "Quit"));

    closeWindow();
    host.choose("Show Window");
    EXPECT_TRUE(shows(true));

    const std::filesystem::path entry = folder.path / "autostart/com.tarnwick.lumbrine.desktop";
    for (const bool on : {true, false}) {
        host.choose("Launch at Login");
        EXPECT_TRUE(bus.waitUntil([&] { return std::filesystem::exists(entry) == on; }));
        EXPECT_TRUE(bus.waitUntil([&] { return entries("Launch at Login").front().checked == on; }));
    }

    host.choose("Quit");
    EXPECT_EQ(lumbrine->wait(interop::patience), 0) << lumbrine->output();
    EXPECT_FALSE(host.hasIcon());
}

TEST_F(LumbrineOnTheMessageBus, ShowsItsWindowOnAClickAndWhenTheDesktopAsksForIt) {
    ASSERT_TRUE(bus.waitUntil([&] { return host.hasIcon(); })) << lumbrine->output();
    ASSERT_TRUE(shows(true));
    closeWindow();
    host.clickIcon();
    EXPECT_TRUE(shows(true));

    const auto ask = [&](const QString& method, const QVariantList& arguments) {
        return bus.call(QStringLiteral("com.tarnwick.lumbrine"), QStringLiteral("/com/tarnwick/lumbrine"),
                        QStringLiteral("org.freedesktop.Application"), method, arguments);
    };
    closeWindow();
    EXPECT_EQ(ask(QStringLiteral("Activate"), {QVariantMap()}).type(), QDBusMessage::ReplyMessage);
    EXPECT_TRUE(shows(true));
    EXPECT_EQ(ask(QStringLiteral("Format"), {}).type(), QDBusMessage::ErrorMessage);
}

TEST_F(LumbrineBeforeTheStatusArea, HasItsIconOnceTheStatusAreaIsThere) {
    ASSERT_TRUE(shows(true)) << lumbrine->output();
    host.open();
    EXPECT_TRUE(bus.waitUntil([&] { return host.hasIcon(); }));
    EXPECT_NEAR(host.opacity(), 0.45 * 255, 2);
    EXPECT_EQ(entries("Show Window").size(), 1u);
}

TEST_F(LumbrineBeforeTheStatusArea, SaysThatItGoesOnWhenItsWindowIsClosedBeforeThat) {
    ASSERT_TRUE(shows(true)) << lumbrine->output();
    closeWindow();
    EXPECT_TRUE(bus.waitUntil([&] { return desktop.popup().has_value(); })) << lumbrine->output();
}

} // namespace
} // namespace lumbrine::desktop
