#include "model/hands/automation_mode_text.h"

namespace lumbrine {
namespace {

struct Spelling {
    int code;
    const char* shown;
    const char* name;
};

constexpr Spelling spellings[] = {
    {1, "Read", "read"},        {2, "Tch", "touch"},        {3, "Ltch", "latch"},
    {4, "Wrt", "write"},        {5, "Off", "off"},          {9, "TRd", "trim+read"},
    {10, "TTch", "trim+touch"}, {11, "TLch", "trim+latch"}, {12, "TWrt", "trim+write"},
};

TEST(AutomationModeText, IsReadFromTheDisplay) {
    for (const Spelling& spelling : spellings)
        EXPECT_EQ(parseAutoModeText(spelling.shown), spelling.code) << spelling.shown;
}

TEST(AutomationModeText, IsReadWithBlanksAroundIt) {
    EXPECT_EQ(parseAutoModeText(" Ltch "), 3);
    EXPECT_EQ(parseAutoModeText("Tch "), 2);
}

TEST(AutomationModeText, IsReadInItsOwnCaseAndWholeOnly) {
    for (const char* text : {"ltch", "LTCH", "Ltc", "Ltch2", "Kick", "", "    ", "T ch"})
        EXPECT_EQ(parseAutoModeText(text), std::nullopt) << text;
}

TEST(AutomationModeText, NamesEveryMode) {
    for (const Spelling& spelling : spellings)
        EXPECT_EQ(autoModeName(static_cast<std::uint8_t>(spelling.code), Bilingual(false)), spelling.name);
}

TEST(AutomationModeText, NamesEverythingElseUnknown) {
    for (const int code : {0, 6, 7, 8, 13, 255}) {
        EXPECT_EQ(autoModeName(static_cast<std::uint8_t>(code), Bilingual(false)), "unknown") << code;
        EXPECT_EQ(autoModeName(static_cast<std::uint8_t>(code), Bilingual(true)), "不明") << code;
    }
}

} // namespace
} // namespace lumbrine
