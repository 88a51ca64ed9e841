#include "platform/linux/running_page.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace lumbrine {
namespace {

namespace fs = std::filesystem;

class RunningPageTest : public testing::Test {
protected:
    RunningPageTest() {
        std::string pattern = (fs::temp_directory_path() / "lumbrine-XXXXXX").string();
        state = ::mkdtemp(pattern.data());
        folder = state + "/lumbrine";
        fs::create_directory(folder);
        std::ofstream(folder + pageKeyName) << "742BCM0SCXPZA154Z02S9P89HC\n";
    }
    ~RunningPageTest() override { fs::remove_all(state); }

    std::string addressFor(std::uint16_t receiverPort) const {
        const auto environment = [this](const std::string& name) -> std::optional<std::string> {
            return name == "XDG_STATE_HOME" ? std::optional(state) : std::nullopt;
        };
        return pageAddress(environment, "192.168.1.2", receiverPort);
    }

    std::string state, folder;
    const RunningPage page{.secure = false, .port = 52780, .receiverPort = 52700};
};

TEST_F(RunningPageTest, IsKnownForAsLongAsItsProgramKeepsTheNotice) {
    EXPECT_EQ(readPageNotice(folder), std::nullopt);
    {
        const PageNotice notice(folder, page);
        EXPECT_EQ(readPageNotice(folder), page);
        EXPECT_EQ(readPageNotice(folder), page) << "reading takes nothing away";
    }
    EXPECT_EQ(readPageNotice(folder), std::nullopt);
}

TEST_F(RunningPageTest, IsNotBelievedOfAKilledProgram) {
    {
        const PageNotice notice(folder, page);
        fs::copy_file(folder + "/web-page", folder + "/left");
    }
    fs::rename(folder + "/left", folder + "/web-page");
    EXPECT_EQ(readPageNotice(folder), std::nullopt);
    const PageNotice next(folder, {.secure = true, .port = 1, .receiverPort = 2});
    EXPECT_EQ(readPageNotice(folder), (RunningPage{.secure = true, .port = 1, .receiverPort = 2}));
}

TEST_F(RunningPageTest, StaysThatOfTheProgramThatCameFirst) {
    const PageNotice first(folder, page);
    {
        const PageNotice second(folder, {.secure = false, .port = 1, .receiverPort = 2});
        EXPECT_EQ(readPageNotice(folder), page);
    }
    EXPECT_EQ(readPageNotice(folder), page);
}

TEST_F(RunningPageTest, IsOpenedAtItsAddressWithTheKey) {
    EXPECT_EQ(addressFor(52700), "");
    const PageNotice notice(folder, page);
    EXPECT_EQ(addressFor(52700), "http://192.168.1.2:52780/#742BCM0SCXPZA154Z02S9P89HC");
    EXPECT_EQ(addressFor(52701), "") << "it leads to another receiver";
}

TEST_F(RunningPageTest, HasNoNoticeWhereThereIsNoFolder) {
    const PageNotice notice(state + "/none", page);
    EXPECT_EQ(readPageNotice(state + "/none"), std::nullopt);
}

} // namespace
} // namespace lumbrine
