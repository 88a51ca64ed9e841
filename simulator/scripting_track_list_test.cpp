#include "simulator/scripting_json.h"
#include "simulator/scripting_track_list.h"

namespace lumbrine {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// "Drums" is a folder around "Kick" and "Snare"; "Vox" stands by itself.
SimulatedSession fourTracks() {
    std::vector<SimulatedTrack> tracks(4);
    tracks[0].name = "Drums";
    tracks[0].isFolder = true;
    tracks[1].name = "Kick";
    tracks[2].name = "Snare";
    tracks[1].folder = tracks[2].folder = 1;
    tracks[3].name = "Vox";
    tracks[3].color = "#ff336699";
    tracks[3].stereo = true;
    return SimulatedSession("Mix", tracks);
}

TrackListRequest page(std::size_t limit, std::size_t offset) {
    TrackListRequest request;
    request.limit = limit;
    request.offset = offset;
    return request;
}

TrackListRequest filtered(std::vector<TrackListRequest::Filter> filters, bool additive = false) {
    TrackListRequest request;
    request.filters = std::move(filters);
    request.additive = additive;
    return request;
}

ScriptingJSON bodyOf(const SimulatedSession& session, const TrackListRequest& request = {},
                     const ScriptingOptions& options = {}) {
    return ScriptingJSON::parse(trackListJSON(pageOf(session, request, options), options));
}

std::vector<std::string> names(const ScriptingJSON& body) {
    std::vector<std::string> list;
    for (const ScriptingJSON& track : body["track_list"])
        list.push_back(track["name"].get<std::string>());
    return list;
}

ScriptingJSON attributes(const SimulatedSession& session, std::size_t index, const ScriptingOptions& options = {}) {
    return bodyOf(session, {}, options)["track_list"][index]["track_attributes"];
}

TEST(TrackListRequest, IsReadFromItsBody) {
    const auto request =
        parseTrackListRequest(R"({"page_limit":1000,"track_filter_list":[{"filter":"All","is_inverted":false}],)"
                              R"("is_filter_list_additive":true,"pagination_request":{"limit":200,"offset":40}})");
    ASSERT_TRUE(request);
    EXPECT_EQ(request->limit, 200u);
    EXPECT_EQ(request->offset, 40u);
    EXPECT_THAT(request->filters, ElementsAre(TrackListRequest::Filter{"All", false}));
    EXPECT_TRUE(request->additive);
}

TEST(TrackListRequest, TakesTheOlderPageLimitWhereThereIsNoOther) {
    EXPECT_EQ(parseTrackListRequest(R"({"page_limit":30})")->limit, 30u);
    EXPECT_EQ(*parseTrackListRequest(""), TrackListRequest{});
}

TEST(TrackListRequest, IsRefusedWhenItIsOfAnotherForm) {
    for (const char* const body :
         {R"([])", R"({)", R"({"page_limit":-1})", R"({"page_limit":"9"})", R"({"page_limit":1.5})",
          R"({"pagination_request":5})", R"({"pagination_request":{"limit":-1}})",
          R"({"pagination_request":{"offset":"a"}})", R"({"track_filter_list":{}})", R"({"track_filter_list":[1]})",
          R"({"track_filter_list":[{}]})", R"({"track_filter_list":[{"filter":1}]})",
          R"({"track_filter_list":[{"filter":"Loud"}]})", R"({"track_filter_list":[{"filter":"All","is_inverted":1}]})",
          R"({"is_filter_list_additive":"yes"})"})
        EXPECT_FALSE(parseTrackListRequest(body)) << body;
}

TEST(TrackList, ListsEveryTrackWithItsType) {
    SimulatedSession session = fourTracks();
    session.change(4, [](SimulatedTrack& track) { track.recordArmed = track.mute = true; });
    EXPECT_EQ(textOf(bodyOf(session)["track_list"][3]),
              R"({"name":"Vox","type":"Audio","id":"track-4","index":4,"color":"#ff336699",)"
              R"("track_attributes":{"is_inactive":"None","is_hidden":"None","is_selected":"None",)"
              R"("is_input_monitoring_on":"None","is_soloed":false,"is_record_enabled":true,"is_muted":true,)"
              R"("is_open":false},"format":"Stereo","parent_folder_name":""})");
    const ScriptingJSON kick = bodyOf(session)["track_list"][1];
    EXPECT_EQ(kick["parent_folder_name"], "Drums");
    EXPECT_EQ(kick["format"], "Mono");
    EXPECT_EQ(bodyOf(session)["track_list"][0]["type"], "RoutingFolder");
    EXPECT_EQ(attributes(session, 0)["is_open"], true);
}

TEST(TrackList, FollowsEveryValueOfTheSession) {
    SimulatedSession session = fourTracks();
    session.change(2, [](SimulatedTrack& track) {
        track.solo = track.selected = track.inputMonitor = track.hidden = track.inactive = true;
    });
    session.rename(2, "キック");
    const ScriptingJSON track = bodyOf(session)["track_list"][1];
    EXPECT_EQ(track["name"], "キック");
    const ScriptingJSON& seen = track["track_attributes"];
    EXPECT_EQ(seen["is_soloed"], true);
    for (const char* key : {"is_selected", "is_input_monitoring_on", "is_hidden", "is_inactive"})
        EXPECT_EQ(seen[key], "SetExplicitly") << key;
}

TEST(TrackList, ListsMembersOfAClosedFolderAsHiddenImplicitly) {
    SimulatedSession session = fourTracks();
    session.change(1, [](SimulatedTrack& track) { track.closed = true; });
    session.setHidden(3, true);
    EXPECT_EQ(attributes(session, 0)["is_hidden"], "None");
    EXPECT_EQ(attributes(session, 0)["is_open"], false);
    EXPECT_EQ(attributes(session, 1)["is_hidden"], "SetImplicitly");
    EXPECT_EQ(attributes(session, 2)["is_hidden"], "SetExplicitlyAndImplicitly");
    EXPECT_EQ(attributes(session, 3)["is_hidden"], "None");
}

TEST(TrackList, SpellsAttributesWithAPrefixOrAsNumbersWhereThatIsChosen) {
    SimulatedSession session = fourTracks();
    session.change(1, [](SimulatedTrack& track) { track.closed = true; });
    session.setHidden(3, true);
    session.setHidden(4, true);
    const auto hidden = [&](AttributeSpelling spelling) {
        std::vector<ScriptingJSON> values;
        ScriptingOptions options;
        options.attributes = spelling;
        for (std::size_t i = 0; i < 4; ++i)
            values.push_back(attributes(session, i, options)["is_hidden"]);
        return values;
    };
    EXPECT_THAT(hidden(AttributeSpelling::prefixedNames),
                ElementsAre("TAState_None", "TAState_SetImplicitly", "TAState_SetExplicitlyAndImplicitly",
                            "TAState_SetExplicitly"));
    EXPECT_THAT(hidden(AttributeSpelling::numbers), ElementsAre(1, 3, 4, 2));
}

TEST(TrackList, ImpliesInputMonitoringOfArmedTracksWhereThatIsChosen) {
    SimulatedSession session = fourTracks();
    session.change(1, [](SimulatedTrack& track) { track.recordArmed = true; });
    session.change(2, [](SimulatedTrack& track) { track.recordArmed = track.inputMonitor = true; });
    ScriptingOptions options;
    EXPECT_EQ(attributes(session, 0, options)["is_input_monitoring_on"], "None");
    options.armedMonitors = true;
    EXPECT_EQ(attributes(session, 0, options)["is_input_monitoring_on"], "SetImplicitly");
    EXPECT_EQ(attributes(session, 1, options)["is_input_monitoring_on"], "SetExplicitlyAndImplicitly");
}

TEST(TrackList, IsInCamelCaseWhereThatIsChosen) {
    ScriptingOptions options;
    options.camelCase = true;
    const std::string text = trackListJSON(pageOf(fourTracks(), page(1, 0), options), options);
    EXPECT_EQ(text, R"({"trackList":[{"name":"Drums","type":"RoutingFolder","id":"track-1","index":1,)"
                    R"("color":"#ff2a2a2a","trackAttributes":{"isInactive":"None","isHidden":"None",)"
                    R"("isSelected":"None","isInputMonitoringOn":"None","isSoloed":false,"isRecordEnabled":false,)"
                    R"("isMuted":false,"isOpen":true},"format":"Mono","parentFolderName":""}],)"
                    R"("paginationResponse":{"total":4,"limit":1,"offset":0}})");
}

TEST(TrackList, IsAnEmptyListForAnEmptySessionOrAnEmptyObjectWhereThatIsChosen) {
    ScriptingOptions options;
    const TrackPage nothing = pageOf(SimulatedSession(), {}, options);
    EXPECT_EQ(trackListJSON(nothing, options),
              R"({"track_list":[],"pagination_response":{"total":0,"limit":1000,"offset":0}})");
    options.emptyListAsObject = true;
    EXPECT_EQ(trackListJSON(nothing, options),
              R"({"track_list":{},"pagination_response":{"total":0,"limit":1000,"offset":0}})");
}

TEST(TrackList, ComesInThePageThatIsAskedFor) {
    const SimulatedSession session = fourTracks();
    const ScriptingJSON body = bodyOf(session, page(2, 1));
    EXPECT_THAT(names(body), ElementsAre("Kick", "Snare"));
    EXPECT_EQ(body["track_list"][0]["index"], 2); // in the session, not in the page
    EXPECT_EQ(textOf(body["pagination_response"]), R"({"total":4,"limit":2,"offset":1})");
    EXPECT_THAT(names(bodyOf(session, page(2, 3))), ElementsAre("Vox"));
    EXPECT_THAT(names(bodyOf(session, page(2, 4))), IsEmpty());
    EXPECT_THAT(names(bodyOf(session, page(2, SIZE_MAX))), IsEmpty());
    EXPECT_EQ(names(bodyOf(session, page(0, 0))).size(), 4u);
    EXPECT_EQ(names(bodyOf(session, page(SIZE_MAX, 1))).size(), 3u);
}

TEST(TrackList, HoldsNoMoreThanAPageHolds) {
    ScriptingOptions options;
    options.pageLimit = 3;
    const ScriptingJSON first = bodyOf(fourTracks(), page(1000, 0), options);
    EXPECT_THAT(names(first), ElementsAre("Drums", "Kick", "Snare"));
    EXPECT_EQ(textOf(first["pagination_response"]), R"({"total":4,"limit":3,"offset":0})");
    EXPECT_THAT(names(bodyOf(fourTracks(), page(1000, 3), options)), ElementsAre("Vox"));
}

TEST(TrackList, LetsThroughWhatItsFiltersLetThrough) {
    SimulatedSession session = fourTracks();
    session.change(1, [](SimulatedTrack& track) { track.closed = true; });
    session.change(2, [](SimulatedTrack& track) { track.mute = track.selected = true; });
    session.change(4, [](SimulatedTrack& track) { track.mute = track.recordArmed = true; });
    const auto listed = [&](const TrackListRequest& request) { return names(bodyOf(session, request)); };
    EXPECT_THAT(listed(filtered({{"Muted"}})), ElementsAre("Kick", "Vox"));
    EXPECT_THAT(listed(filtered({{"Muted", true}})), ElementsAre("Drums", "Snare"));
    EXPECT_THAT(listed(filtered({{"Hidden"}})), ElementsAre("Kick", "Snare"));
    EXPECT_THAT(listed(filtered({{"Muted"}, {"Hidden"}})), ElementsAre("Kick"));
    EXPECT_THAT(listed(filtered({{"Muted"}, {"Hidden"}}, true)), ElementsAre("Kick", "Snare", "Vox"));
    EXPECT_THAT(listed(filtered({{"Selected"}})), ElementsAre("Kick"));
    EXPECT_THAT(listed(filtered({{"RecordEnabled"}})), ElementsAre("Vox"));
    EXPECT_THAT(listed(filtered({{"Soloed"}})), IsEmpty());
    EXPECT_THAT(listed(filtered({{"InputMonitoring"}})), IsEmpty());
    EXPECT_THAT(listed(filtered({{"Inactive"}})), IsEmpty());
    EXPECT_THAT(listed(filtered({{"All", true}})), IsEmpty());
    EXPECT_EQ(bodyOf(session, filtered({{"Muted"}}))["track_list"][1]["index"], 4);
}

TEST(TrackList, HasTracksTooManyOrTooFewWhereThatIsChosen) {
    ScriptingOptions options;
    options.miscount = 2;
    const ScriptingJSON many = bodyOf(fourTracks(), {}, options);
    EXPECT_THAT(names(many), ElementsAre("Drums", "Kick", "Snare", "Vox", "Ghost 1", "Ghost 2"));
    EXPECT_EQ(many["track_list"][5]["index"], 6);
    EXPECT_EQ(many["pagination_response"]["total"], 6);
    options.miscount = -3;
    EXPECT_THAT(names(bodyOf(fourTracks(), {}, options)), ElementsAre("Drums"));
    options.miscount = -9;
    EXPECT_THAT(names(bodyOf(fourTracks(), {}, options)), IsEmpty());
}

TEST(ScriptingTrackList, TakesFiltersWithTheirPrefix) {
    const auto request = parseTrackListRequest(R"({"track_filter_list":[{"filter":"TLFilter_All"}]})");
    ASSERT_TRUE(request);
    EXPECT_EQ(pageOf(SimulatedSession("Test", std::vector<SimulatedTrack>(3)), *request, {}).total, 3u);
    EXPECT_FALSE(parseTrackListRequest(R"({"track_filter_list":[{"filter":"TLFilter_None"}]})"));
}

TEST(ScriptingTrackList, SendsThePageAsStatsWhereThatIsChosen) {
    ScriptingOptions options;
    options.statsForPages = true;
    const ScriptingJSON body = ScriptingJSON::parse(trackListJSON(emptyPage({}, options), options));
    EXPECT_EQ(body["stats"]["total"], 0);
    EXPECT_FALSE(body.contains("pagination_response"));
}

TEST(ScriptingTrackList, NamesTheKindOfATrack) {
    std::vector<SimulatedTrack> tracks(2);
    tracks[1].type = SimulatedTrack::Type::master;
    const ScriptingJSON body =
        ScriptingJSON::parse(trackListJSON(pageOf(SimulatedSession("Test", tracks), {}, {}), {}));
    EXPECT_EQ(body["track_list"][0]["type"], "Audio");
    EXPECT_EQ(body["track_list"][1]["type"], "Master");
}

} // namespace
} // namespace lumbrine
