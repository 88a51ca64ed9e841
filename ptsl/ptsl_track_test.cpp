#include "ptsl/ptsl_track.h"

#include <limits>

namespace lumbrine {
namespace {

using Object = JSONValue::Object;
using Array = JSONValue::Array;

PTSLTrack withAttributes(const Object& attributes) {
    return trackFrom({{"track_attributes", attributes}}, 0);
}

bool isSet(const JSONValue& value) {
    return attributeIsSet(&value);
}

bool isExplicitlySet(const JSONValue& value) {
    return attributeIsExplicitlySet(&value);
}

bool isTrue(const JSONValue& value) {
    return boolValue(&value);
}

TEST(PTSLTrack, IsReadFromItsObject) {
    const PTSLTrack track = trackFrom({{"index", 7},
                                       {"name", "ボーカル"},
                                       {"color", "#ff2a2a2a"},
                                       {"id", "track-9"},
                                       {"type", "Audio"},
                                       {"track_attributes", Object{{"is_selected", "SetExplicitly"},
                                                                   {"is_input_monitoring_on", "SetExplicitly"},
                                                                   {"is_hidden", "SetImplicitly"},
                                                                   {"is_inactive", 4},
                                                                   {"is_muted", true},
                                                                   {"is_soloed", 1},
                                                                   {"is_record_enabled", true},
                                                                   {"is_frozen", true}}}},
                                      0);
    EXPECT_EQ(track, (PTSLTrack{7, "ボーカル", 0x2A2A2A, true, true, true, true, true, true, true, "track-9"}));
}

TEST(PTSLTrack, IsReadInCamelCaseToo) {
    const PTSLTrack track = trackFrom({{"trackAttributes", Object{{"isSelected", 2},
                                                                  {"isInputMonitoringOn", "TAState_SetExplicitly"},
                                                                  {"isHidden", 3},
                                                                  {"isInactive", "TAState_SetImplicitly"},
                                                                  {"isMuted", true},
                                                                  {"isSoloed", true},
                                                                  {"isRecordEnabled", true}}}},
                                      0);
    EXPECT_EQ(track, (PTSLTrack{1, "", std::nullopt, true, true, true, true, true, true, true, ""}));
}

TEST(PTSLTrack, SetsEachFlagFromItsOwnAttribute) {
    EXPECT_EQ(withAttributes({{"is_selected", 2}}), (PTSLTrack{.index = 1, .isSelected = true}));
    EXPECT_EQ(withAttributes({{"is_input_monitoring_on", 2}}), (PTSLTrack{.index = 1, .isInputMonitoringOn = true}));
    EXPECT_EQ(withAttributes({{"is_hidden", 2}}), (PTSLTrack{.index = 1, .isHidden = true}));
    EXPECT_EQ(withAttributes({{"is_inactive", 2}}), (PTSLTrack{.index = 1, .isInactive = true}));
    EXPECT_EQ(withAttributes({{"is_muted", true}}), (PTSLTrack{.index = 1, .isMuted = true}));
    EXPECT_EQ(withAttributes({{"is_soloed", true}}), (PTSLTrack{.index = 1, .isSoloed = true}));
    EXPECT_EQ(withAttributes({{"is_record_enabled", true}}), (PTSLTrack{.index = 1, .isRecordEnabled = true}));
}

TEST(PTSLTrack, HasNothingSetWithoutAttributes) {
    EXPECT_EQ(trackFrom({{"name", "Kick"}}, 0), (PTSLTrack{.index = 1, .name = "Kick"}));
    EXPECT_EQ(trackFrom({{"track_attributes", "x"}, {"trackAttributes", 3}}, 0), PTSLTrack{.index = 1});
}

TEST(PTSLTrack, ReadsTheCamelCaseAttributesWhenTheOthersAreNoObject) {
    const Object muted{{"isMuted", true}};
    EXPECT_TRUE(trackFrom({{"track_attributes", JSONValue()}, {"trackAttributes", muted}}, 0).isMuted);
    EXPECT_FALSE(trackFrom({{"track_attributes", Object{}}, {"trackAttributes", muted}}, 0).isMuted);
}

TEST(PTSLTrack, LooksUnderTheCamelCaseKeyOnlyWhenTheOtherIsAbsent) {
    EXPECT_TRUE(withAttributes({{"isMuted", true}}).isMuted);
    EXPECT_FALSE(withAttributes({{"is_muted", false}, {"isMuted", true}}).isMuted);
    EXPECT_FALSE(withAttributes({{"is_muted", JSONValue()}, {"isMuted", true}}).isMuted);
}

TEST(PTSLTrack, TakesItsPlaceInTheListForAMissingIndex) {
    const auto tracks = tracksFrom({{"track_list", Array{Object{}, Object{{"index", 9}}, Object{{"name", "c"}}}}});
    ASSERT_EQ(tracks.size(), 3u);
    EXPECT_EQ(tracks[0].index, 1);
    EXPECT_EQ(tracks[1].index, 9);
    EXPECT_EQ(tracks[2].index, 3);
}

TEST(PTSLTrack, TakesAWholeNumberForItsIndexAndNothingElse) {
    const auto indexFrom = [](const JSONValue& value) { return trackFrom({{"index", value}}, 2).index; };
    EXPECT_EQ(indexFrom(0), 0);
    EXPECT_EQ(indexFrom(-5), -5);
    EXPECT_EQ(indexFrom(std::numeric_limits<std::int64_t>::max()), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(indexFrom(8.0), 8);
    EXPECT_EQ(indexFrom(9'007'199'254'740'992.0), 9'007'199'254'740'992);
    EXPECT_EQ(indexFrom(-9'007'199'254'740'992.0), -9'007'199'254'740'992);
    EXPECT_EQ(indexFrom(9'007'199'254'740'994.0), 3); // a double no longer tells it from its neighbours
    for (const JSONValue& value : {JSONValue(8.5), JSONValue(1e30), JSONValue(true), JSONValue("8"), JSONValue(),
                                   JSONValue(Array{8}), JSONValue(Object{})})
        EXPECT_EQ(indexFrom(value), 3);
}

TEST(PTSLTrack, HasNoNameOrColourWhereThereIsNoText) {
    const PTSLTrack track = trackFrom({{"name", 5}, {"color", JSONValue()}}, 0);
    EXPECT_EQ(track.name, "");
    EXPECT_EQ(track.color, std::nullopt);
}

TEST(PTSLTrack, HasTheColourOfItsText) {
    EXPECT_EQ(trackFrom({{"color", "#ff336699"}}, 0).color, 0x336699U);
    EXPECT_EQ(trackFrom({{"color", "none"}}, 0).color, std::nullopt);
}

TEST(ParseColor, TakesSixOrEightHexadecimalDigitsAndDropsTheAlpha) {
    EXPECT_EQ(parseColor("#FF336699"), 0x336699U);
    EXPECT_EQ(parseColor("336699"), 0x336699U);
    EXPECT_EQ(parseColor("#aAbBcC"), 0xAABBCCU);
    EXPECT_EQ(parseColor("00000000"), 0U);
}

TEST(ParseColor, TakesNothingElse) {
    for (const char* text : {"", "#", "#12345", "GG3366", "#1234567", "##336699", "0x3366", "-33669", "+33669",
                             " 33669", "33669 ", "#FF3366990", "３３６"})
        EXPECT_EQ(parseColor(text), std::nullopt) << text;
}

TEST(TrackList, IsFoundUnderEitherKey) {
    const Array one{Object{{"name", "a"}}};
    const Array two{Object{{"name", "a"}}, Object{{"name", "b"}}};
    EXPECT_EQ(tracksFrom({{"track_list", one}}).size(), 1u);
    EXPECT_EQ(tracksFrom({{"trackList", two}}).size(), 2u);
    EXPECT_EQ(tracksFrom({{"track_list", one}, {"trackList", two}}).size(), 1u);
    EXPECT_EQ(tracksFrom({{"track_list", Array{}}, {"trackList", two}}).size(), 0u);
}

TEST(TrackList, MustBeAnArrayOfObjects) {
    const Array one{Object{{"name", "a"}}};
    for (const JSONValue& other : {JSONValue(Object{}), JSONValue(), JSONValue("x"), JSONValue(Array{1}),
                                   JSONValue(Array{Object{}, JSONValue()})}) {
        EXPECT_TRUE(tracksFrom({{"track_list", other}}).empty());
        EXPECT_EQ(tracksFrom({{"track_list", other}, {"trackList", one}}).size(), 1u);
    }
    EXPECT_TRUE(tracksFrom({}).empty());
}

TEST(TrackAttributes, CountInputMonitoringOnlyWhenItIsSetOnTheTrackItself) {
    const PTSLTrack track =
        withAttributes({{"is_input_monitoring_on", "TAState_SetImplicitly"}, {"is_selected", "TAState_SetImplicitly"}});
    EXPECT_FALSE(track.isInputMonitoringOn);
    EXPECT_TRUE(track.isSelected);
}

TEST(TrackAttributes, AreSetByTheBeginningOfTheirNames) {
    for (const char* name : {"SetExplicitly", "SetImplicitly", "TAState_SetExplicitly", "TAState_SetImplicitly",
                             "SetExplicitlyAndImplicitly", "TAState_SetExplicitlyAndImplicitly"})
        EXPECT_TRUE(isSet(name)) << name;
    for (const char* name : {"", "None", "TAState_None", "setExplicitly", "Set", "TAState_", "NotSetExplicitly", "2"})
        EXPECT_FALSE(isSet(name)) << name;
    for (const char* name :
         {"SetExplicitly", "TAState_SetExplicitly", "SetExplicitlyAndImplicitly", "TAState_SetExplicitlyAndImplicitly"})
        EXPECT_TRUE(isExplicitlySet(name)) << name;
    for (const char* name : {"SetImplicitly", "TAState_SetImplicitly", "None", ""})
        EXPECT_FALSE(isExplicitlySet(name)) << name;
}

TEST(TrackAttributes, AreSetByTheirNumbers) {
    for (const int number : {2, 3, 4})
        EXPECT_TRUE(isSet(number)) << number;
    for (const int number : {-2, 0, 1, 5})
        EXPECT_FALSE(isSet(number)) << number;
    for (const int number : {2, 4})
        EXPECT_TRUE(isExplicitlySet(number)) << number;
    for (const int number : {0, 1, 3, 5})
        EXPECT_FALSE(isExplicitlySet(number)) << number;
}

TEST(TrackAttributes, AreReadWithoutTheFractionOfANumber) {
    EXPECT_TRUE(isSet(2.0));
    EXPECT_TRUE(isSet(4.9));
    EXPECT_FALSE(isSet(1.9));
    EXPECT_FALSE(isSet(5.0));
    EXPECT_TRUE(isExplicitlySet(2.5));
    EXPECT_FALSE(isExplicitlySet(3.5));
    EXPECT_FALSE(isSet(1e300));
    EXPECT_FALSE(isSet(-1e300));
}

TEST(TrackAttributes, AreNotSetByAnythingElse) {
    for (const JSONValue& value :
         {JSONValue(true), JSONValue(), JSONValue(Array{2}), JSONValue(Object{{"value", "SetExplicitly"}})}) {
        EXPECT_FALSE(isSet(value));
        EXPECT_FALSE(isExplicitlySet(value));
    }
    EXPECT_FALSE(attributeIsSet(nullptr));
    EXPECT_FALSE(attributeIsExplicitlySet(nullptr));
}

TEST(TrackAttributes, AreTrueAsBooleansAndNumbersOnly) {
    EXPECT_TRUE(isTrue(true));
    EXPECT_FALSE(isTrue(false));
    for (const JSONValue& value : {JSONValue(1), JSONValue(-1), JSONValue(2), JSONValue(0.5)})
        EXPECT_TRUE(isTrue(value));
    for (const JSONValue& value : {JSONValue(0), JSONValue(0.0), JSONValue("true"), JSONValue("1"), JSONValue(),
                                   JSONValue(Array{true}), JSONValue(Object{})})
        EXPECT_FALSE(isTrue(value));
    EXPECT_FALSE(boolValue(nullptr));
}

} // namespace
} // namespace lumbrine
