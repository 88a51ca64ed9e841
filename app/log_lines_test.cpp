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

using Lines = std::vector<std::string>;

Lines applied(Lines onScreen, const Lines& log) {
    const LogChange change = changeBetween(onScreen, log);
    onScreen.erase(onScreen.begin(), onScreen.begin() + static_cast<std::ptrdiff_t>(change.gone));
    onScreen.insert(onScreen.end(), log.begin() + static_cast<std::ptrdiff_t>(change.firstNew), log.end());
    return onScreen;
}

TEST(LogChange, IsNothingForAnUnchangedLog) {
    const LogChange change = changeBetween({"a", "b"}, {"a", "b"});
    EXPECT_EQ(change.gone, 0u);
    EXPECT_EQ(change.firstNew, 2u);
}

TEST(LogChange, AddsWhatIsNew) {
    const LogChange change = changeBetween({"a", "b"}, {"a", "b", "c"});
    EXPECT_EQ(change.gone, 0u);
    EXPECT_EQ(change.firstNew, 2u);
    EXPECT_EQ(changeBetween({}, {"a"}).firstNew, 0u);
}

TEST(LogChange, DropsWhatHasScrolledOut) {
    const LogChange change = changeBetween({"a", "b", "c"}, {"b", "c", "d", "e"});
    EXPECT_EQ(change.gone, 1u);
    EXPECT_EQ(change.firstNew, 2u);
}

TEST(LogChange, ReplacesAllWhenNothingIsLeft) {
    const LogChange change = changeBetween({"a", "b"}, {"c", "d"});
    EXPECT_EQ(change.gone, 2u);
    EXPECT_EQ(change.firstNew, 0u);
}

TEST(LogChange, EndsAtTheLogWhateverRepeatsItself) {
    const std::vector<Lines> logs{{},
                                  {"a"},
                                  {"a", "a"},
                                  {"a", "a", "a"},
                                  {"a", "b", "a"},
                                  {"b", "a", "b"},
                                  {"a", "b", "a", "b", "a"},
                                  {"b", "b", "a"}};
    for (const Lines& before : logs)
        for (const Lines& after : logs)
            EXPECT_EQ(applied(before, after), after);
}

} // namespace
} // namespace lumbrine
