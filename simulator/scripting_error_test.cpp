#include "simulator/scripting_error.h"
#include "simulator/scripting_json.h"

namespace lumbrine {
namespace {

const ScriptingFailure busy{ScriptingError::hostIsBusy, "The host is busy"};

TEST(ScriptingError, IsPrintedWithItsNumber) {
    EXPECT_EQ(
        errorJSON(busy, ErrorTypeSpelling::number),
        R"({"errors":[{"command_error_type":138,"command_error_message":"The host is busy","is_warning":false}]})");
}

TEST(ScriptingError, IsPrintedWithItsNumberAsText) {
    EXPECT_EQ(errorJSON(busy, ErrorTypeSpelling::digits), R"({"errors":[{"command_error_type":"138",)"
                                                          R"("command_error_message":"The host is busy",)"
                                                          R"("is_warning":false}]})");
}

TEST(ScriptingError, IsPrintedWithItsName) {
    const std::map<ScriptingError, std::string> names{
        {ScriptingError::unknownError, "PT_UnknownError"},
        {ScriptingError::noOpenSession, "PT_NoOpenedSession"},
        {ScriptingError::noTrackFound, "PT_NoTrackFound"},
        {ScriptingError::invalidParameter, "PT_InvalidParameter"},
        {ScriptingError::forbidden, "PT_Forbidden"},
        {ScriptingError::forbiddenTrackType, "PT_ForbiddenTrackType"},
        {ScriptingError::unsupportedCommand, "PT_UnsupportedCommand"},
        {ScriptingError::hostNotReady, "PT_HostNotReady"},
        {ScriptingError::commandTimedOut, "PT_CommandTimeout"},
        {ScriptingError::hostIsBusy, "PT_HostIsBusy"},
        {ScriptingError::versionMismatch, "SDK_VersionMismatch"},
    };
    for (const auto& [error, name] : names)
        EXPECT_EQ(errorJSON({error, "x"}, ErrorTypeSpelling::name),
                  R"({"errors":[{"command_error_type":")" + name +
                      R"(","command_error_message":"x","is_warning":false}]})");
}

TEST(ScriptingJSON, TakesObjectsAndNothingElseFromABody) {
    EXPECT_TRUE(objectOf(""));
    EXPECT_TRUE(objectOf(R"({"a":1})"));
    for (const char* const text : {"[]", "1", "\"a\"", "null", "{", "{}x", "{\"a\":\"\xFF\"}"})
        EXPECT_FALSE(objectOf(text)) << text;
    EXPECT_FALSE(objectOf(std::string(100'000, '[')));
    EXPECT_FALSE(objectOf(std::string(100'000, '[') + std::string(100'000, ']'))); // deep, and no object
}

TEST(ScriptingJSON, RepairsWhatIsNoUTF8) {
    EXPECT_EQ(textOf(ScriptingJSON{{"name", "a\xFF"}}), "{\"name\":\"a\xEF\xBF\xBD\"}");
}

TEST(ScriptingJSON, SpellsKeysBothWays) {
    EXPECT_EQ(spelledKey("is_input_monitoring_on", false), "is_input_monitoring_on");
    EXPECT_EQ(spelledKey("is_input_monitoring_on", true), "isInputMonitoringOn");
    EXPECT_EQ(spelledKey("name", true), "name");
}

} // namespace
} // namespace lumbrine
