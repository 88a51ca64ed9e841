#include "base/decimal_number.h"

#include <string>

namespace lumbrine {
namespace {

TEST(DecimalNumber, HasDigitsOnEitherSideOfItsPoint) {
    EXPECT_EQ(decimalNumber("0.75"), 0.75);
    EXPECT_EQ(decimalNumber("-12.5"), -12.5);
    EXPECT_EQ(decimalNumber("42"), 42.0);
    EXPECT_EQ(decimalNumber("9876543210"), 9876543210.0);
    EXPECT_EQ(decimalNumber(".5"), 0.5);
    EXPECT_EQ(decimalNumber("5."), 5.0);
}

TEST(DecimalNumber, IsNothingElse) {
    for (const char* word :
         {"", "-", ".", "+1", "1,5", "1.2.3", "1e3", "0x1", " 1", "1 ", "1/", "1:", "nan", "inf", "--1"})
        EXPECT_EQ(decimalNumber(word), std::nullopt) << word;
}

TEST(DecimalNumber, IsFinite) {
    EXPECT_EQ(decimalNumber(std::string(400, '9')), std::nullopt);
}

} // namespace
} // namespace lumbrine
