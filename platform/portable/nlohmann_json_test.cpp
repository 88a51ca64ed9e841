#include "platform/portable/nlohmann_json.h"

#include <cmath>
#include <limits>

namespace lumbrine {
namespace {

class NlohmannJSONTest : public testing::Test {
protected:
    JSONValue parsed(std::string_view document) {
        auto value = json.parse(document);
        if (!value) ADD_FAILURE() << document << ": " << value.error().text;
        return value.value_or(JSONValue());
    }

    std::string errorOf(std::string_view document) {
        const auto value = json.parse(document);
        return value ? "no error" : value.error().text;
    }

    NlohmannJSON json{Bilingual(false)};
    NlohmannJSON japanese{Bilingual(true)};
};

std::string nested(int depth) {
    const auto times = static_cast<std::size_t>(depth);
    return std::string(times, '[') + std::string(times, ']');
}

TEST_F(NlohmannJSONTest, ReadsEveryKindOfValue) {
    EXPECT_EQ(parsed(R"({"a": [null, true, false, -7, 2.5, "x\u3042\n"], "b": {}})"),
              JSONValue(JSONValue::Object{{"a", JSONValue::Array{JSONValue(), true, false, -7, 2.5, "xあ\n"}},
                                          {"b", JSONValue::Object{}}}));
}

TEST_F(NlohmannJSONTest, TellsBooleansIntegersAndOtherNumbersApart) {
    EXPECT_TRUE(parsed("true").as<bool>());
    EXPECT_FALSE(parsed("true").as<std::int64_t>());
    EXPECT_TRUE(parsed("1").as<std::int64_t>());
    EXPECT_FALSE(parsed("1").as<bool>());
    EXPECT_TRUE(parsed("1.0").as<double>());
    EXPECT_TRUE(parsed("1e0").as<double>());
    EXPECT_FALSE(parsed("1.0").as<std::int64_t>());
}

TEST_F(NlohmannJSONTest, KeepsLargeNumbersAsNearAsTheyCanBe) {
    EXPECT_EQ(parsed("9223372036854775807"), JSONValue(std::numeric_limits<std::int64_t>::max()));
    EXPECT_EQ(parsed("-9223372036854775808"), JSONValue(std::numeric_limits<std::int64_t>::min()));
    EXPECT_EQ(parsed("9223372036854775808"), JSONValue(0x1p63));
    EXPECT_EQ(parsed("18446744073709551616"), JSONValue(0x1p64));
    EXPECT_EQ(parsed("1" + std::string(300, '0')), JSONValue(1e300));
}

TEST_F(NlohmannJSONTest, RefusesNumbersBeyondAllRange) {
    EXPECT_EQ(errorOf("1e999"), "not valid JSON at byte 5");
    EXPECT_NE(errorOf("1" + std::string(400, '0')), "no error");
}

TEST_F(NlohmannJSONTest, LetsTheLastOfEqualKeysCount) {
    EXPECT_EQ(parsed(R"({"a": {"b": 1}, "a": 2})"), JSONValue(JSONValue::Object{{"a", 2}}));
}

TEST_F(NlohmannJSONTest, RefusesWhatIsNotJSON) {
    for (const char* document : {"", " ", "{", "[1,]", "{\"a\"}", "{'a': 1}", "nul", "01", "+1", "NaN", "\"a", "1 2",
                                 "{} x", "\"\\ud800\"", "\"\x01\"", "\"\xC3(\"", "\"\xED\xA0\x80\"", "// 1"})
        EXPECT_NE(errorOf(document), "no error") << document;
}

TEST_F(NlohmannJSONTest, RefusesZerosWhereverTheyStand) {
    using namespace std::string_view_literals;
    EXPECT_EQ(errorOf("{}\0"sv), "not valid JSON at byte 3");
    EXPECT_EQ(errorOf("{} \0{\"a\":1}"sv), "not valid JSON at byte 4");
    for (const std::string_view document :
         {"\0"sv, "\0{}"sv, "1\0"sv, "[1\0]"sv, "[1,\0 2]"sv, "\"a\0\""sv, "{\"\0\":1}"sv})
        EXPECT_NE(errorOf(document), "no error") << document;
}

TEST_F(NlohmannJSONTest, ReadsWhiteSpaceAroundTheDocument) {
    EXPECT_EQ(parsed(" \r\n\t1\n "), JSONValue(1));
}

TEST_F(NlohmannJSONTest, FollowsADocumentToAHundredLevelsOnly) {
    EXPECT_TRUE(json.parse(nested(NlohmannJSON::deepest)));
    EXPECT_EQ(errorOf(nested(NlohmannJSON::deepest + 1)), "JSON is nested too deeply");
    EXPECT_EQ(errorOf(std::string(1'000'000, '[')), "JSON is nested too deeply");
    std::string objects;
    for (int i = 0; i < 1'000'000; ++i)
        objects += "{\"a\":";
    EXPECT_EQ(errorOf(objects), "JSON is nested too deeply");
}

// Eight bytes of text can become a hundred in memory.
TEST_F(NlohmannJSONTest, ReadsAHundredThousandValuesOnly) {
    const auto zeros = [](std::size_t count) {
        std::string list = "[0";
        for (std::size_t i = 1; i < count; ++i)
            list += ",0";
        return list + "]";
    };
    EXPECT_TRUE(json.parse(zeros(NlohmannJSON::mostValues - 1))); // and the list itself
    EXPECT_EQ(errorOf(zeros(NlohmannJSON::mostValues)), "JSON has too many values");
    std::string objects = "[{}";
    for (std::size_t i = 1; i < NlohmannJSON::mostValues; ++i)
        objects += ",{}";
    EXPECT_EQ(errorOf(objects + "]"), "JSON has too many values");
    EXPECT_EQ(japanese.parse(zeros(NlohmannJSON::mostValues)).error().text, "JSON の値が多すぎる");
}

TEST_F(NlohmannJSONTest, SaysWhatIsWrongInTheUsersLanguage) {
    EXPECT_EQ(japanese.parse("[1,]").error().text, "JSON として読めない (4 バイト目)");
    EXPECT_EQ(japanese.parse(nested(101)).error().text, "JSON の入れ子が深すぎる");
    EXPECT_EQ(japanese.serialise({{"a", std::nan("")}}).error().text, "有限でない数は JSON に書けない");
    EXPECT_EQ(japanese.serialise({{"a", "\xFF"}}).error().text, "UTF-8 でない文字は JSON に書けない");
}

TEST_F(NlohmannJSONTest, WritesWhatItReads) {
    const JSONValue::Object object{{"names", JSONValue::Array{"Kick \"in\"", "ボーカル", "a\\b\n"}},
                                   {"limit", 1000},
                                   {"enabled", true},
                                   {"gain", 0.1},
                                   {"none", JSONValue()},
                                   {"page", JSONValue::Object{{"offset", 0}}}};
    const auto document = json.serialise(object);
    ASSERT_TRUE(document);
    EXPECT_EQ(parsed(*document), JSONValue(object));
    EXPECT_NE(document->find("\"limit\":1000"), std::string::npos);
    EXPECT_NE(document->find("ボーカル"), std::string::npos);
    EXPECT_EQ(json.serialise({}), "{}");
}

TEST_F(NlohmannJSONTest, DoesNotWriteWhatJSONCannotHold) {
    const auto badText = json.serialise({{"name", "Kick\xE3"}});
    ASSERT_FALSE(badText);
    EXPECT_EQ(badText.error().text, "text that is not UTF-8 cannot be written as JSON");
    const auto badKey = json.serialise({{"\xFF", 1}});
    EXPECT_FALSE(badKey);
    for (const double number : {std::nan(""), HUGE_VAL, -HUGE_VAL}) {
        const auto badNumber = json.serialise({{"a", JSONValue::Array{number}}});
        ASSERT_FALSE(badNumber);
        EXPECT_EQ(badNumber.error().text, "a number that is not finite cannot be written as JSON");
    }
}

} // namespace
} // namespace lumbrine
