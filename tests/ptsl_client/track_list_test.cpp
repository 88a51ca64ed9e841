// What a reply becomes.
#include "base/testing/segmentations.h"
#include "ptsl/testing/service_frames.h"
#include "tests/ptsl_client/envelope_service.h"

namespace lumbrine::service {
namespace {

class TrackListReply : public ClientTest {
protected:
    std::vector<PTSLTrack> tracksIn(const std::string& replyJSON) {
        answer(trackListCommand, reply(replyJSON));
        auto tracks = client.trackList();
        EXPECT_TRUE(tracks) << errorOf(tracks);
        return tracks.value_or(std::vector<PTSLTrack>());
    }

    Texts textsFor(const std::string& replyJSON) {
        answer(trackListCommand, reply(replyJSON));
        return textsOfTrackList();
    }
};

const std::string threeTracks = R"({"track_list":[
  {"name":"Kick","index":1,"type":"Audio","id":"{1}","color":"#ff336699","track_attributes":
    {"is_inactive":"TAState_None","is_hidden":"TAState_None","is_selected":"TAState_SetImplicitly",
     "is_input_monitoring_on":"TAState_SetImplicitly","is_muted":1,"is_soloed":false}},
  {"name":"ボーカル","index":2,"color":"","track_attributes":
    {"is_hidden":"SetImplicitly","is_input_monitoring_on":2,"is_muted":"true","is_record_enabled":true}},
  {"name":"Aux"}],"pagination_response":{"total":3,"limit":1000,"offset":0}})";

const std::vector<PTSLTrack> threeExpected{
    {.index = 1, .name = "Kick", .color = 0x336699, .isSelected = true, .isMuted = true, .id = "{1}"},
    {.index = 2, .name = "ボーカル", .isInputMonitoringOn = true, .isHidden = true, .isRecordEnabled = true},
    {.index = 3, .name = "Aux"}};

TEST_F(TrackListReply, BecomesTracksInOrder) {
    EXPECT_EQ(tracksIn(threeTracks), threeExpected);
}

TEST_F(TrackListReply, IsUnderstoodHoweverItArrives) {
    ASSERT_TRUE(client.trackList());
    std::uint32_t stream = 5;
    const Bytes message = reply(threeTracks);
    for (const auto& pieces : segmentationsOf(response(1, message))) {
        scripted.answer = [&](ScriptedService::Call& call) {
            EXPECT_EQ(call.stream, stream);
            Bytes whole = response(stream, message);
            for (const Bytes& piece : pieces) {
                call.line.send(ByteView(whole).first(piece.size()));
                whole.erase(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(piece.size()));
            }
        };
        const auto tracks = client.trackList();
        ASSERT_TRUE(tracks) << errorOf(tracks);
        EXPECT_EQ(*tracks, threeExpected);
        stream += 2;
    }
    EXPECT_EQ(scripted.received.size(), 1u);
}

TEST_F(TrackListReply, MayBeInCamelCase) {
    EXPECT_EQ(tracksIn(R"({"trackList":[{"name":"A","trackAttributes":{"isMuted":true,"isHidden":3}}]})"),
              (std::vector<PTSLTrack>{{.index = 1, .name = "A", .isHidden = true, .isMuted = true}}));
}

TEST_F(TrackListReply, IsNoTrackAtAllWhenItIsEmpty) {
    for (const char* empty :
         {"{}", R"({"track_list":[]})", R"({"track_list":{}})", R"({"track_list":null})", R"({"track_list":[1,2]})"})
        EXPECT_EQ(tracksIn(empty), std::vector<PTSLTrack>()) << empty;
    answer(trackListCommand, {});
    EXPECT_FALSE(client.trackList());
}

TEST_F(TrackListReply, TellsNumbersFromBooleans) {
    const auto tracks = tracksIn(R"({"track_list":[
        {"index":true,"track_attributes":{"is_hidden":true,"is_inactive":2.0,"is_muted":0.5}},
        {"index":7.0},{"index":7.5},{"index":1e2},{"index":99999999999999999999}]})");
    ASSERT_EQ(tracks.size(), 5u);
    EXPECT_EQ(tracks[0], (PTSLTrack{.index = 1, .isInactive = true, .isMuted = true}));
    EXPECT_EQ(tracks[1].index, 7);
    EXPECT_EQ(tracks[2].index, 3);
    EXPECT_EQ(tracks[3].index, 100);
    EXPECT_EQ(tracks[4].index, 5);
}

TEST_F(TrackListReply, IsRepairedWhereItIsNotUTF8) {
    Bytes message = reply(R"({"track_list":[{"name":"Kick?"}]})");
    std::ranges::replace(message, '?', 0xFF);
    answer(trackListCommand, message);
    EXPECT_EQ(client.trackList().value().at(0).name, "Kick\uFFFD");
}

TEST_F(TrackListReply, MayHaveAThousandTracks) {
    std::string list = "{\"track_list\":[";
    for (int i = 1; i <= 1000; ++i)
        list += (i > 1 ? ",{\"name\":\"トラック " : "{\"name\":\"トラック ") + std::to_string(i) +
                "\",\"color\":\"#ff336699\",\"track_attributes\":{\"is_hidden\":\"TAState_None\",\"is_muted\":true}}";
    const auto tracks = tracksIn(list + "]}");
    ASSERT_EQ(tracks.size(), 1000u);
    EXPECT_EQ(tracks[999], (PTSLTrack{.index = 1000, .name = "トラック 1000", .color = 0x336699, .isMuted = true}));
}

TEST_F(TrackListReply, MustBeAnObject) {
    const Texts expected{"PTSL malformed response: response JSON is not a dictionary",
                         "PTSL 応答が壊れている: 応答 JSON が辞書でない"};
    for (const char* other : {"[]", "[{\"name\":\"Kick\"}]", "3", "\"x\"", "null", "true"})
        EXPECT_EQ(textsFor(other), expected) << other;
}

TEST_F(TrackListReply, MustBeJSON) {
    EXPECT_EQ(textsFor("{\"track_list\":"), Texts("not valid JSON at byte 15", "JSON として読めない (15 バイト目)"));
    EXPECT_EQ(textsFor("{\"a\":1e999}").first, "not valid JSON at byte 10");
}

TEST_F(TrackListReply, MustNotBeNestedWithoutEnd) {
    EXPECT_EQ(textsFor(std::string(100'000, '[')), Texts("JSON is nested too deeply", "JSON の入れ子が深すぎる"));
}

TEST_F(TrackListReply, MustComeInAnEnvelopeThatCanBeRead) {
    const auto textsForMessage = [this](const Bytes& message) {
        answer(trackListCommand, message);
        return textsOfTrackList();
    };
    const auto malformed = [](const std::string& english, const std::string& japanese) {
        return Texts("PTSL malformed response: " + english, "PTSL 応答が壊れている: " + japanese);
    };
    EXPECT_EQ(textsForMessage({0x12, 0x80}), malformed("varint truncated", "varint が途中で切れた"));
    EXPECT_EQ(textsForMessage(Bytes(11, 0xFF)), malformed("varint too long", "varint が長すぎる"));
    EXPECT_EQ(textsForMessage({0x12, 0x02, '{'}),
              malformed("length exceeds available bytes", "長さが実体を超えている"));
    EXPECT_EQ(textsForMessage({0x21, 0x00}), malformed("fixed64 truncated", "fixed64 が切れた"));
    EXPECT_EQ(textsForMessage({0x25, 0x00}), malformed("fixed32 truncated", "fixed32 が切れた"));
    EXPECT_EQ(textsForMessage({0x13}), malformed("unknown wire type 3", "未知の wire type 3"));
    EXPECT_EQ(textsForMessage({0x0A, 0x01, 0x0C}), malformed("unknown wire type 4", "未知の wire type 4"));
}

} // namespace
} // namespace lumbrine::service
