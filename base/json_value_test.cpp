#include "base/json_value.h"

namespace lumbrine {
namespace {

using Object = JSONValue::Object;
using Array = JSONValue::Array;

TEST(JSONObject, FindsItsMembers) {
    const Object object{{"a", 1}, {"b", JSONValue()}, {"", "empty"}};
    ASSERT_NE(object.find("a"), nullptr);
    EXPECT_EQ(*object.find("a"), JSONValue(1));
    EXPECT_EQ(*object.find("b"), JSONValue());
    EXPECT_EQ(*object.find(""), JSONValue("empty"));
    EXPECT_EQ(object.find("c"), nullptr);
    EXPECT_EQ(Object().find("a"), nullptr);
}

TEST(JSONObject, LetsTheLastOfEqualNamesCount) {
    Object object{{"a", 1}, {"b", 2}, {"a", 3}};
    EXPECT_EQ(*object.find("a"), JSONValue(3));
    object.add("b") = JSONValue(4);
    EXPECT_EQ(*object.find("b"), JSONValue(4));
    EXPECT_EQ(object, (Object{{"a", 3}, {"b", 4}}));
}

TEST(JSONObject, KeepsTheOrderOfItsMembers) {
    const Object object{{"z", 1}, {"a", 2}};
    EXPECT_EQ(object.members().front().name, "z");
}

TEST(JSONObject, IsEqualInAnyOrder) {
    EXPECT_EQ((Object{{"a", 1}, {"b", Array{Object{{"c", true}}}}}),
              (Object{{"b", Array{Object{{"c", true}}}}, {"a", 1}}));
    EXPECT_NE((Object{{"a", 1}}), (Object{{"a", 2}}));
    EXPECT_NE((Object{{"a", 1}}), (Object{{"b", 1}}));
    EXPECT_NE((Object{{"a", 1}}), (Object{{"a", 1}, {"b", 1}}));
    EXPECT_NE((Object{{"a", 1}, {"b", 1}}), (Object{{"a", 1}}));
}

TEST(JSONObject, IsAssignedAsACopy) {
    const Object original{{"a", 1}};
    Object copy{{"b", 2}};
    copy = original;
    EXPECT_EQ(copy, original);
    copy.add("c") = 3;
    EXPECT_EQ(original, (Object{{"a", 1}}));
}

TEST(JSONObject, IsComparedInTimeHoweverDeepItIs) {
    Object one;
    Object other;
    for (int depth = 0; depth < 100; ++depth) {
        one = {{"a", 1}, {"a", one}};
        other = {{"a", 2}, {"a", other}};
    }
    EXPECT_EQ(one, other);
}

TEST(JSONValue, TellsKindsApart) {
    EXPECT_NE(JSONValue(true), JSONValue(1));
    EXPECT_NE(JSONValue(1), JSONValue(1.0));
    EXPECT_NE(JSONValue("1"), JSONValue(1));
    EXPECT_NE(JSONValue(Array{}), JSONValue(Object{}));
    EXPECT_NE(JSONValue(), JSONValue(false));
    EXPECT_EQ(JSONValue(1).as<double>(), nullptr);
    EXPECT_EQ(*JSONValue(1).as<std::int64_t>(), 1);
}

} // namespace
} // namespace lumbrine
