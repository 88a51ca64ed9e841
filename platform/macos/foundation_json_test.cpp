#include "platform/macos/foundation_json.h"

#include <cmath>
#include <limits>

namespace lumbrine {
namespace {

class FoundationJSONTest : public testing::Test {
protected:
    // The value of the single member "a" of an object.
    JSONValue member(std::string_view document) {
        const auto value = json.parse("{\"a\":" + std::string(document) + "}");
        if (!value) ADD_FAILURE() << document << ": " << value.error().text;
        const auto* const object = value ? value->as<JSONValue::Object>() : nullptr;
        const JSONValue* const found = object != nullptr ? object->find("a") : nullptr;
        return found != nullptr ? *found : JSONValue();
    }

    FoundationJSON json{Bilingual(false)};
    FoundationJSON japanese{Bilingual(true)};
};

std::string nested(int depth) {
    const auto times = static_cast<std::size_t>(depth);
    return std::string(times, '[') + std::string(times, ']');
}

TEST_F(FoundationJSONTest, ReadsEveryKindOfValue) {
    EXPECT_EQ(member(R"([null, true, false, -7, 2.5, "x\u3042\n", {}])"),
              JSONValue(JSONValue::Array{JSONValue(), true, false, -7, 2.5, "xあ\n", JSONValue::Object{}}));
}

TEST_F(FoundationJSONTest, TellsBooleansAndNumbersApart) {
    EXPECT_TRUE(member("true").as<bool>());
    EXPECT_FALSE(member("true").as<std::int64_t>());
    EXPECT_TRUE(member("1").as<std::int64_t>());
    EXPECT_FALSE(member("1").as<bool>());
    EXPECT_TRUE(member("2.5").as<double>());
}

TEST_F(FoundationJSONTest, KeepsLargeNumbersAsNearAsTheyCanBe) {
    EXPECT_EQ(member("9223372036854775807"), JSONValue(std::numeric_limits<std::int64_t>::max()));
    EXPECT_EQ(member("-9223372036854775808"), JSONValue(std::numeric_limits<std::int64_t>::min()));
    EXPECT_EQ(member("9223372036854775808"), JSONValue(0x1p63));
}

TEST_F(FoundationJSONTest, RefusesWhatIsNoDocument) {
    for (const char* document :
         {"", " ", "{", "{\"a\"}", "{'a': 1}", "nul", "1", "\"a\"", "{} x", "{\"a\":\"\xC3(\"}"}) {
        const auto value = json.parse(document);
        ASSERT_FALSE(value) << document;
        EXPECT_FALSE(value.error().text.empty()) << document;
    }
}

TEST_F(FoundationJSONTest, FollowsADocumentToAHundredLevelsOnly) {
    EXPECT_TRUE(json.parse(nested(FoundationJSON::deepest)));
    EXPECT_EQ(json.parse(nested(FoundationJSON::deepest + 1)).error().text, "JSON is nested too deeply");
    EXPECT_EQ(japanese.parse(nested(FoundationJSON::deepest + 1)).error().text, "JSON の入れ子が深すぎる");
    EXPECT_FALSE(json.parse(std::string(1'000'000, '[')));
}

TEST_F(FoundationJSONTest, WritesWhatItReads) {
    const JSONValue::Object object{{"names", JSONValue::Array{"Kick \"in\"", "ボーカル", "a\\b/c\n"}},
                                   {"limit", 1000},
                                   {"enabled", true},
                                   {"gain", 0.1},
                                   {"none", JSONValue()},
                                   {"page", JSONValue::Object{{"offset", 0}}}};
    const auto document = json.serialise(object);
    ASSERT_TRUE(document);
    EXPECT_EQ(json.parse(*document), JSONValue(object));
    EXPECT_EQ(json.serialise({}), "{}");
}

TEST_F(FoundationJSONTest, DoesNotWriteWhatJSONCannotHold) {
    EXPECT_EQ(json.serialise({{"name", "Kick\xE3"}}).error().text, "text that is not UTF-8 cannot be written as JSON");
    EXPECT_FALSE(json.serialise({{"\xFF", 1}}));
    for (const double number : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        EXPECT_EQ(json.serialise({{"a", JSONValue::Array{number}}}).error().text,
                  "a number that is not finite cannot be written as JSON");
        EXPECT_EQ(japanese.serialise({{"a", number}}).error().text, "有限でない数は JSON に書けない");
    }
}

} // namespace
} // namespace lumbrine
