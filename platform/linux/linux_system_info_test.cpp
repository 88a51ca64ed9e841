#include "platform/linux/linux_system_info.h"

#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace lumbrine {
namespace {

std::string hostName() {
    std::array<char, 256> host{};
    EXPECT_EQ(gethostname(host.data(), host.size() - 1), 0);
    return host.data();
}

TEST(LinuxSystemInfo, TellsAnUnsetVariableFromAnEmptyOne) {
    const LinuxSystemInfo system;
    setenv("LUMBRINE_TEST_VARIABLE", "", 1);
    EXPECT_EQ(system.environment("LUMBRINE_TEST_VARIABLE"), "");
    unsetenv("LUMBRINE_TEST_VARIABLE");
    EXPECT_EQ(system.environment("LUMBRINE_TEST_VARIABLE"), std::nullopt);
}

TEST(LinuxSystemInfo, ReadsTheLanguagesFromItsEnvironment) {
    setenv("LANGUAGE", "ja:en", 1);
    EXPECT_EQ(LinuxSystemInfo().preferredLanguages(), (std::vector<std::string>{"ja", "en"}));
    unsetenv("LANGUAGE");
}

TEST(LinuxSystemInfo, NamesTheComputerByItsHostNameWithoutAPrettyOne) {
    EXPECT_EQ(LinuxSystemInfo("/nonexistent/machine-info").computerName(), hostName());
}

TEST(LinuxSystemInfo, PrefersThePrettyHostName) {
    std::string path = testing::TempDir() + "machine-info-XXXXXX";
    close(mkstemp(path.data()));
    std::ofstream(path) << "PRETTY_HOSTNAME=\"Studio B\"\n";
    EXPECT_EQ(LinuxSystemInfo(path).computerName(), "Studio B");
    std::remove(path.c_str());
}

} // namespace
} // namespace lumbrine
