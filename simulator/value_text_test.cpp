#include "simulator/value_text.h"

namespace lumbrine {
namespace {

std::string textOf(const DisplayText& text) {
    return {text.begin(), text.end()};
}

TEST(ValueText, PrintsAFaderInDecibels) {
    EXPECT_EQ(textOf(faderText(FaderValue::ofRaw(0))), "-oo ");
    EXPECT_EQ(textOf(faderText(FaderValue::ofRaw(6144))), "-30 ");
    EXPECT_EQ(textOf(faderText(FaderValue::ofRaw(12288))), "+0.0");
    EXPECT_EQ(textOf(faderText(FaderValue::ofRaw(14336))), "+6.0");
    EXPECT_EQ(textOf(faderText(FaderValue::ofRaw(FaderValue::fullScale))), "+12 ");
}

TEST(ValueText, PrintsAPanByItsSide) {
    EXPECT_EQ(textOf(panText(-100)), "<100");
    EXPECT_EQ(textOf(panText(0.2)), "<C> ");
    EXPECT_EQ(textOf(panText(30)), "30> ");
    EXPECT_EQ(textOf(panText(100)), "100>");
}

} // namespace
} // namespace lumbrine
