#include "app/log_lines.h"

namespace lumbrine {
namespace {

TEST(LogMarker, IsTheSymbolAtTheBeginningOfALine) {
    const std::vector<std::pair<std::string, LogMarker>> samples{
        {"✓ UDP listening on :52700", LogMarker::success},
        {"✗ UDP failed: bind", LogMarker::failure},
        {"⚠ Full names", LogMarker::warning},
        {"→ switch zone0 port2 pressed", LogMarker::started},
        {"← name", LogMarker::received},
        {"▶ Scanning all tracks", LogMarker::longJob},
    };
    for (const auto& [line, marker] : samples) {
        EXPECT_EQ(markerOf(line).marker, marker) << line;
        EXPECT_EQ(line.substr(markerOf(line).length, 1), " ") << line;
    }
}

TEST(LogMarker, MayComeWithTheSelectorOfItsColouredPicture) {
    const std::string line = "⚠️ Bonjour advertising off";
    EXPECT_EQ(markerOf(line).marker, LogMarker::warning);
    EXPECT_EQ(line.substr(markerOf(line).length), " Bonjour advertising off");
}

TEST(LogMarker, FollowsTheNameOfTheSecondSurface) {
    const std::string line = "[9-16] → pan mode";
    EXPECT_EQ(markerOf(line).marker, LogMarker::started);
    EXPECT_EQ(line.substr(markerOf(line).begin, markerOf(line).length), "→");
    EXPECT_EQ(markerOf("[9-16] ♥ ping").marker, LogMarker::none);
}

TEST(LogMarker, IsAbsentElsewhere) {
    for (const char* line : {"", "iOS connected: 192.168.1.7", "   (it opens ...)", "[8] ✓ ...", "\xE2\x9C"}) {
        EXPECT_EQ(markerOf(line).marker, LogMarker::none) << line;
        EXPECT_EQ(markerOf(line).length, 0u) << line;
    }
}

} // namespace
} // namespace lumbrine
