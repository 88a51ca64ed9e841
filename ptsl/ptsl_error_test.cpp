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
    EXPECT_EQ(PTSLError::unfinished().description(english), "PTSL gave no result yet");
    EXPECT_EQ(PTSLError::unfinished().description(japanese), "PTSL の結果がまだ出ていない");
    EXPECT_EQ(PTSLError::notRunning().description(english), "Cannot reach Pro Tools' PTSL (not running or disabled)");
    EXPECT_EQ(PTSLError::notRunning().description(japanese), "Pro Tools の PTSL に繋がらない (未起動か無効)");
    EXPECT_EQ(PTSLError::timedOut().description(english), "PTSL response timed out");
    EXPECT_EQ(PTSLError::timedOut().description(japanese), "PTSL の応答待ちがタイムアウト");
}

TEST(PTSLFailure, IsReportedInWhicheverWayItCame) {
    EXPECT_EQ(description(PTSLFailure(PTSLError::timedOut()), english), "PTSL response timed out");
    EXPECT_EQ(description(PTSLFailure(JSONError{"not valid JSON at byte 3"}), english), "not valid JSON at byte 3");
}

TEST(PTSLFailure, SaysWhetherTheCommandMayHaveBeenCarriedOut) {
    const auto refused = [](PTSLRefusal refusal) { return verdictOn(PTSLError::commandFailed("x", refusal)); };
    EXPECT_EQ(refused(PTSLRefusal::other), Verdict::refused);
    EXPECT_EQ(refused(PTSLRefusal::none), Verdict::refused);
    EXPECT_EQ(refused(PTSLRefusal::hostIsBusy), Verdict::notYet);
    EXPECT_EQ(refused(PTSLRefusal::hostNotReady), Verdict::notYet);
    EXPECT_EQ(refused(PTSLRefusal::sessionID), Verdict::notYet);
    EXPECT_EQ(verdictOn(PTSLError::notRunning()), Verdict::notYet);
    EXPECT_EQ(refused(PTSLRefusal::noOpenSession), Verdict::unknown);
    EXPECT_EQ(refused(PTSLRefusal::commandTimedOut), Verdict::unknown);
    EXPECT_EQ(verdictOn(PTSLError::timedOut()), Verdict::unknown);
    EXPECT_EQ(verdictOn(PTSLError::transport("x")), Verdict::unknown);
    EXPECT_EQ(verdictOn(PTSLError::unfinished()), Verdict::unknown);
    EXPECT_EQ(verdictOn(JSONError{"x"}), Verdict::unknown);
}

JSONValue errorOfType(JSONValue type) {
    const JSONValue::Object error{{"command_error_type", std::move(type)}};
    return JSONValue::Object{{"errors", JSONValue::Array{error}}};
}

TEST(PTSLRefusal, IsReadInEverySpelling) {
    for (const JSONValue& type :
         {JSONValue(138), JSONValue("138"), JSONValue("PT_HostIsBusy"), JSONValue("CEType_PT_HostIsBusy")})
        EXPECT_EQ(refusalIn(errorOfType(type)), PTSLRefusal::hostIsBusy);
    EXPECT_EQ(refusalIn(errorOfType("SDK_VersionMismatch")), PTSLRefusal::versionMismatch);
}

TEST(PTSLRefusal, OfAnotherKindDiffersFromNone) {
    EXPECT_EQ(refusalIn(errorOfType(107)), PTSLRefusal::other);
    EXPECT_EQ(refusalIn(errorOfType("PT_NoTrackFound")), PTSLRefusal::other);
    EXPECT_EQ(refusalIn(errorOfType(0)), PTSLRefusal::other);
    for (const JSONValue& without :
         {JSONValue(), JSONValue(138), JSONValue(JSONValue::Object{}), JSONValue(JSONValue::Object{{"errors", 138}}),
          JSONValue(JSONValue::Object{{"errors", JSONValue::Array{}}}),
          JSONValue(JSONValue::Object{{"errors", JSONValue::Array{138}}}),
          JSONValue(JSONValue::Object{{"errors", JSONValue::Array{JSONValue::Object{}}}})})
        EXPECT_EQ(refusalIn(without), PTSLRefusal::none);
}

} // namespace
} // namespace lumbrine
