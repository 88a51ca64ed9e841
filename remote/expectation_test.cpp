#include "remote/expectation.h"

namespace lumbrine::remote {
namespace {

bool fits(std::string_view pattern, std::string_view line) {
    const auto expectation = Expectation::of(pattern);
    EXPECT_TRUE(expectation.has_value()) << pattern;
    return expectation && expectation->fits(line);
}

TEST(Expectation, FitsTheBeginningOfALineWordByWord) {
    EXPECT_TRUE(fits("fader 3", "fader 3 0.7200"));
    EXPECT_TRUE(fits("pan 3 left 6", "pan 3 left 6 centre"));
    EXPECT_FALSE(fits("fader 3", "fader 13 0.7200"));
    EXPECT_FALSE(fits("fader 3", "fader 2 3"));
    EXPECT_FALSE(fits("pan 3 left 6 centre", "pan 3 left 6"));
    EXPECT_FALSE(fits("fad", "fader 3 0.7200"));
}

TEST(Expectation, FindsAWordByItsKey) {
    EXPECT_TRUE(fits("switches 3=M--", "switches 1=--- 2=-S- 3=M-- 4=---"));
    EXPECT_TRUE(fits("switches 1=--- 3=M--", "switches 1=--- 2=-S- 3=M-- 4=---"));
    EXPECT_FALSE(fits("switches 3=M--", "switches 1=M-- 2=M-- 3=--- 13=M--"));
    EXPECT_TRUE(fits("row 12 name=Kick In", "row 12 fader=unknown name=Kick In comment="));
    EXPECT_FALSE(fits("row 12 name=Kick Out", "row 12 fader=unknown name=Kick In comment="));
}

TEST(Expectation, LetsStarsAndQuestionMarksStandForCharacters) {
    EXPECT_TRUE(fits("switches 3=M??", "switches 3=M-R"));
    EXPECT_FALSE(fits("switches 3=M??", "switches 3=m-R"));
    EXPECT_TRUE(fits("full-name * Vo*l", "full-name 4 Vocal"));
    EXPECT_TRUE(fits("a *b*c*", "a xxbxbxcxx"));
    EXPECT_FALSE(fits("a *b*c", "a xxbxbxcxx"));
    EXPECT_TRUE(fits("a b*", "a b"));
}

TEST(Expectation, ComparesNumbers) {
    EXPECT_TRUE(fits("fader 3 ~0.72", "fader 3 0.7200"));
    EXPECT_TRUE(fits("fader 3 ~0.72", "fader 3 0.7250"));
    EXPECT_TRUE(fits("fader 3 ~0.72", "fader 3 0.7150"));
    EXPECT_FALSE(fits("fader 3 ~0.72", "fader 3 0.7251"));
    EXPECT_FALSE(fits("fader 3 ~0.72", "fader 3 0.7149"));
    EXPECT_TRUE(fits("fader 3 <0.5", "fader 3 0.4999"));
    EXPECT_FALSE(fits("fader 3 <0.5", "fader 3 0.5000"));
    EXPECT_TRUE(fits("fader 3 <=0.5", "fader 3 0.5000"));
    EXPECT_TRUE(fits("fader 3 >=0.5", "fader 3 0.5000"));
    EXPECT_FALSE(fits("fader 3 >0.5", "fader 3 0.5000"));
}

TEST(Expectation, ComparesValuesAfterAKey) {
    EXPECT_TRUE(fits("bank first=>16 tracks=>=24", "bank first=17 tracks=24 strips=8"));
    EXPECT_FALSE(fits("bank first=>16", "bank first=16 tracks=24 strips=8"));
    EXPECT_FALSE(fits("bank first=>16", "bank first=unknown tracks=24 strips=8"));
}

TEST(Expectation, IsRefusedWhenItSaysNothingOrComparesWithNoNumber) {
    EXPECT_FALSE(Expectation::of("").has_value());
    EXPECT_FALSE(Expectation::of("   ").has_value());
    EXPECT_FALSE(Expectation::of("fader 3 ~loud").has_value());
    EXPECT_FALSE(Expectation::of("bank first=>").has_value());
}

} // namespace
} // namespace lumbrine::remote
