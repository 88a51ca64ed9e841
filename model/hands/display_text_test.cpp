#include "model/hands/display_text.h"

#include <gtest/gtest.h>

namespace lumbrine {
namespace {

TEST(DisplayText, IsNoNameWhenItIsALevelAPanOrAMode) {
    for (const char* text :
         {"-oo", "-30", "+0.0", "-3.5", "+12", "<C>", "<100", "30>", "Read", "Tch", "TWrt", "Trim", "T/L"})
        EXPECT_FALSE(isNameOnDisplay(text)) << text;
}

TEST(DisplayText, IsANameOtherwise) {
    for (const char* text : {"", "Bass", "01", "808", "-", "<", "A-3", "-A", "Vox>", "Rea"})
        EXPECT_TRUE(isNameOnDisplay(text)) << text;
}

} // namespace
} // namespace lumbrine
