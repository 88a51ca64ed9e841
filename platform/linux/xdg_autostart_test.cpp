#include "platform/linux/xdg_autostart.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>

namespace lumbrine {
namespace {

namespace fs = std::filesystem;

using testing::HasSubstr;
using testing::StartsWith;

class XdgAutostartTest : public testing::Test {
protected:
    XdgAutostartTest() {
        std::string pattern = (fs::temp_directory_path() / "lumbrine-autostart-XXXXXX").string();
        home = ::mkdtemp(pattern.data());
    }
    ~XdgAutostartTest() override { fs::remove_all(home); }

    XdgAutostart service() { return XdgAutostart({.folder = folder().string(), .program = "/usr/bin/lumbrine"}); }

    fs::path folder() const { return home / "config" / "autostart"; }
    fs::path entry() const { return folder() / "com.tarnwick.lumbrine.desktop"; }

    std::string entryText() const {
        std::ifstream file(entry());
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

    void writeEntry(const std::string& text) const {
        fs::create_directories(folder());
        std::ofstream(entry()) << text;
    }

    fs::path home;
};

TEST_F(XdgAutostartTest, IsOffWhereThereIsNoEntry) {
    EXPECT_FALSE(service().isEnabled());
}

TEST_F(XdgAutostartTest, WritesAnEntryThatStartsTheProgram) {
    ASSERT_TRUE(service().registerApplication());
    EXPECT_TRUE(service().isEnabled());
    EXPECT_THAT(entryText(), StartsWith("[Desktop Entry]\nType=Application\n"));
    EXPECT_THAT(entryText(), HasSubstr("\nName=Lumbrine\n"));
    EXPECT_THAT(entryText(), HasSubstr("\nExec=\"/usr/bin/lumbrine\" --hidden\n"));
    EXPECT_EQ(std::distance(fs::directory_iterator(folder()), {}), 1); // nothing of the writing is left
}

TEST_F(XdgAutostartTest, TakesTheEntryAway) {
    ASSERT_TRUE(service().registerApplication());
    ASSERT_TRUE(service().unregisterApplication());
    EXPECT_FALSE(fs::exists(entry()));
    EXPECT_FALSE(service().isEnabled());
    EXPECT_TRUE(service().unregisterApplication()); // there is none any more
}

TEST_F(XdgAutostartTest, HonoursAnEntryThatWasSwitchedOff) {
    writeEntry("[Desktop Entry]\nType=Application\nExec=lumbrine\nHidden=true\n");
    EXPECT_FALSE(service().isEnabled());
    writeEntry("[Desktop Entry]\nExec=lumbrine\nX-GNOME-Autostart-enabled=false\n");
    EXPECT_FALSE(service().isEnabled());
    ASSERT_TRUE(service().registerApplication());
    EXPECT_TRUE(service().isEnabled());
}

TEST_F(XdgAutostartTest, ReadsEntriesAsDesktopsDo) {
    EXPECT_TRUE(startsAtLogin("# a comment\n[Desktop Entry]\r\nExec = lumbrine\r\nHidden = false\r\n"));
    EXPECT_TRUE(startsAtLogin("[Desktop Entry]\nExec=lumbrine\n[Other]\nHidden=true\n"));
    EXPECT_TRUE(startsAtLogin("[Desktop Entry]\nExec=lumbrine\n#Hidden=true\n"));
    EXPECT_FALSE(startsAtLogin(""));
    EXPECT_FALSE(startsAtLogin("Exec=lumbrine\n"));
    EXPECT_FALSE(startsAtLogin("[Desktop Entry]\nExec=\n"));
    EXPECT_FALSE(startsAtLogin("[Desktop Entry]\nName=Lumbrine\nno value\n"));
}

TEST_F(XdgAutostartTest, QuotesWhateverStandsInTheProgramsPath) {
    EXPECT_THAT(autostartEntry("/opt/my programs/lumbrine"),
                HasSubstr("\nExec=\"/opt/my programs/lumbrine\" --hidden\n"));
    EXPECT_THAT(autostartEntry("/a%b"), HasSubstr("\nExec=\"/a%%b\" --hidden\n"));
    EXPECT_THAT(autostartEntry("/a$b"), HasSubstr("\nExec=\"/a\\\\$b\" --hidden\n"));
    EXPECT_THAT(autostartEntry("/a\"b`c"), HasSubstr("\nExec=\"/a\\\\\"b\\\\`c\" --hidden\n"));
    EXPECT_THAT(autostartEntry("/a\\b"), HasSubstr("\nExec=\"/a\\\\\\\\b\" --hidden\n"));
}

TEST_F(XdgAutostartTest, ReportsWhyItCannotWrite) {
    std::ofstream(home / "config") << "a file where the folder should be";
    const auto registered = service().registerApplication();
    ASSERT_FALSE(registered);
    EXPECT_THAT(registered.error(), StartsWith(folder().string() + ": "));
    EXPECT_THAT(registered.error(), HasSubstr("Not a directory"));
    EXPECT_FALSE(service().isEnabled());
    const auto unregistered = service().unregisterApplication();
    ASSERT_FALSE(unregistered);
    EXPECT_EQ(unregistered.error(), entry().string() + ": Not a directory");
}

TEST_F(XdgAutostartTest, RefusesToWriteIntoAFolderOfAnother) {
    if (::geteuid() == 0) GTEST_SKIP() << "root may write everywhere";
    fs::create_directories(folder());
    ::chmod(folder().c_str(), 0500);
    const auto registered = service().registerApplication();
    ::chmod(folder().c_str(), 0700);
    ASSERT_FALSE(registered);
    EXPECT_THAT(registered.error(), HasSubstr("Permission denied"));
}

TEST_F(XdgAutostartTest, LeavesTheOldEntryWhereTheNewOneCannotBeWritten) {
    writeEntry("[Desktop Entry]\nExec=lumbrine\nHidden=true\n");
    fs::create_directory(entry().string() + ".new");
    ASSERT_FALSE(service().registerApplication());
    EXPECT_THAT(entryText(), HasSubstr("Hidden=true"));
}

TEST_F(XdgAutostartTest, DoesNothingForAUserWithoutAHome) {
    XdgAutostart nowhere({.folder = "", .program = "/usr/bin/lumbrine"});
    EXPECT_FALSE(nowhere.isEnabled());
    EXPECT_EQ(nowhere.registerApplication().error(), "neither XDG_CONFIG_HOME nor HOME is set");
}

using Values = std::map<std::string, std::string>;

class Variables final : public SystemInfo {
public:
    explicit Variables(Values variables) : variables(std::move(variables)) {}
    std::optional<std::string> environment(const std::string& name) const override {
        const auto found = variables.find(name);
        return found == variables.end() ? std::nullopt : std::optional(found->second);
    }
    std::vector<std::string> preferredLanguages() const override { return {}; }
    std::optional<std::string> computerName() const override { return std::nullopt; }
    std::optional<std::string> primaryIPv4() const override { return std::nullopt; }

private:
    const Values variables;
};

TEST(XdgAutostartPlace, IsInTheFolderOfTheUsersSettings) {
    using Place = XdgAutostart::Place;
    EXPECT_EQ(Place::of(Variables(Values{{"HOME", "/home/anna"}})).folder, "/home/anna/.config/autostart");
    EXPECT_EQ(Place::of(Variables(Values{{"HOME", "/home/anna"}, {"XDG_CONFIG_HOME", "/conf"}})).folder,
              "/conf/autostart");
    EXPECT_EQ(Place::of(Variables(Values{{"HOME", "/home/anna"}, {"XDG_CONFIG_HOME", ""}})).folder,
              "/home/anna/.config/autostart");
    EXPECT_EQ(Place::of(Variables(Values{{"HOME", "/home/anna"}, {"XDG_CONFIG_HOME", "relative"}})).folder,
              "/home/anna/.config/autostart");
    EXPECT_EQ(Place::of(Variables(Values{})).folder, "");
}

TEST(XdgAutostartPlace, StartsTheProgramThatRuns) {
    EXPECT_EQ(XdgAutostart::Place::of(Variables(Values{})).program, fs::read_symlink("/proc/self/exe").string());
}

} // namespace
} // namespace lumbrine
