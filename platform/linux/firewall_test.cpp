// Whether a firewall is switched on, by the settings of a computer in a folder.
#include "platform/linux/firewall.h"

#include <fstream>

namespace lumbrine {
namespace {

TEST(Firewall, IsFoundWhenItIsSwitchedOn) {
    const std::filesystem::path root = testing::TempDir() + "lumbrine-firewall";
    EXPECT_EQ(activeFirewall(root), std::nullopt);
    std::filesystem::create_directories(root / "etc/ufw");
    std::ofstream(root / "etc/ufw/ufw.conf") << "# Set to yes to start on boot.\nENABLED=no\nLOGLEVEL=low\n";
    EXPECT_EQ(activeFirewall(root), std::nullopt);
    std::ofstream(root / "etc/ufw/ufw.conf") << "# Set to yes to start on boot.\nENABLED=yes\nLOGLEVEL=low\n";
    EXPECT_EQ(activeFirewall(root), "ufw");
    std::filesystem::remove_all(root);
}

} // namespace
} // namespace lumbrine
