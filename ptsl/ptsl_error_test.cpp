#include "ptsl/ptsl_error.h"
#include "ptsl/testing/languages.h"

namespace lumbrine {
namespace {

TEST(PTSLError, IsWrittenInTheUsersLanguage) {
    EXPECT_EQ(PTSLError::transport("x").description(english), "PTSL transport error: x");
    EXPECT_EQ(PTSLError::transport("x").description(japanese), "PTSL 通信エラー: x");
    EXPECT_EQ(PTSLError::malformedResponse("x").description(english), "PTSL malformed response: x");
    EXPECT_EQ(PTSLError::malformedResponse("x").description(japanese), "PTSL 応答が壊れている: x");
    EXPECT_EQ(PTSLError::commandFailed("x").description(english), "PTSL command failed: x");
    EXPECT_EQ(PTSLError::commandFailed("x").description(japanese), "PTSL コマンド失敗: x");
    EXPECT_EQ(PTSLError::notRunning().description(english), "Cannot reach Pro Tools' PTSL (not running or disabled)");
    EXPECT_EQ(PTSLError::notRunning().description(japanese), "Pro Tools の PTSL に繋がらない (未起動か無効)");
    EXPECT_EQ(PTSLError::timedOut().description(english), "PTSL response timed out");
    EXPECT_EQ(PTSLError::timedOut().description(japanese), "PTSL の応答待ちがタイムアウト");
}

TEST(PTSLFailure, IsReportedInWhicheverWayItCame) {
    EXPECT_EQ(description(PTSLFailure(PTSLError::timedOut()), english), "PTSL response timed out");
    EXPECT_EQ(description(PTSLFailure(JSONError{"not valid JSON at byte 3"}), english), "not valid JSON at byte 3");
}

TEST(PTSLFailure, KnowsARefusalByTheService) {
    EXPECT_TRUE(isCommandFailed(PTSLError::commandFailed("x")));
    EXPECT_FALSE(isCommandFailed(PTSLError::transport("x")));
    EXPECT_FALSE(isCommandFailed(JSONError{"x"}));
}

} // namespace
} // namespace lumbrine
