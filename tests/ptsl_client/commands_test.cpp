// What each command sends.
#include "ptsl/testing/service_frames.h"
#include "tests/ptsl_client/envelope_service.h"

namespace lumbrine::service {
namespace {

using Object = JSONValue::Object;
using Array = JSONValue::Array;
using testing::ElementsAre;

class Commands : public ClientTest {};

TEST_F(Commands, RegisterBeforeTheFirstTrackListWithoutASession) {
    ASSERT_TRUE(client.trackList());
    EXPECT_THAT(scripted.commands(), ElementsAre(registerCommand, trackListCommand));
    const auto data = scripted.framesOfType(0);
    ASSERT_EQ(data.size(), 2u);
    const auto beginning = [](const Bytes& payload, std::ptrdiff_t size) {
        return Bytes(payload.begin() + 5, payload.begin() + 5 + size); // behind the prefix
    };
    EXPECT_EQ(beginning(data[0].payload, 7), (Bytes{0x0A, 0x04,                 // header, 4 bytes
                                                    0x10, 0x46, 0x18, 0x05,     // command 70, version 5
                                                    0x12}));                    // arguments
    EXPECT_EQ(beginning(data[1].payload, 12), (Bytes{0x0A, 0x09,                // header, 9 bytes
                                                     0x10, 0x03, 0x18, 0x05,    // command 3, version 5
                                                     0x22, 0x03, 'S', '-', '1', // session
                                                     0x12}));                   // arguments
}

TEST_F(Commands, RegisterWithCompanyAndApplication) {
    ASSERT_TRUE(client.trackList());
    EXPECT_EQ(argumentsOf(scripted.requests.at(0)),
              (Object{{"company_name", "Tarnwick"}, {"application_name", "Lumbrine"}}));
}

TEST_F(Commands, AskForAThousandTracksOfAllKinds) {
    ASSERT_TRUE(client.trackList());
    EXPECT_EQ(argumentsOf(scripted.requests.at(1)),
              (Object{{"page_limit", 1000},
                      {"track_filter_list", Array{Object{{"filter", "All"}, {"is_inverted", false}}}},
                      {"is_filter_list_additive", false},
                      {"pagination_request", Object{{"limit", 1000}, {"offset", 0}}}}));
}

TEST_F(Commands, SetMuteAndSoloOfSeveralTracks) {
    ASSERT_TRUE(client.setMute({"Kick", "ボーカル"}, true));
    ASSERT_TRUE(client.setSolo({"Bass"}, false));
    EXPECT_THAT(scripted.commands(), ElementsAre(registerCommand, muteCommand, soloCommand));
    EXPECT_EQ(argumentsOf(scripted.requests.at(1)),
              (Object{{"track_names", Array{"Kick", "ボーカル"}}, {"enabled", true}}));
    EXPECT_EQ(argumentsOf(scripted.requests.at(2)), (Object{{"track_names", Array{"Bass"}}, {"enabled", false}}));
}

TEST_F(Commands, SetInputMonitoringOfOneTrack) {
    ASSERT_TRUE(client.setInputMonitor("Gtr \"DI\" \\ 2", true));
    EXPECT_THAT(scripted.commands(), ElementsAre(registerCommand, inputMonitorCommand));
    EXPECT_EQ(argumentsOf(scripted.requests.at(1)),
              (Object{{"track_names", Array{"Gtr \"DI\" \\ 2"}}, {"enabled", true}}));
}

TEST_F(Commands, GoToTheRequestMethodOfTheService) {
    ASSERT_TRUE(client.setMute({"Kick"}, true));
    for (const SentFrame& frame : scripted.framesOfType(1))
        EXPECT_EQ(std::string(frame.payload.begin() + 4, frame.payload.begin() + 30), "/ptsl.PTSL/SendGrpcRequest");
}

TEST_F(Commands, GoToAnyPortThatIsGiven) {
    EnvelopeService elsewhere(streams, 5001);
    PTSLClient other(runtime, streams, json, Bilingual(false), "Tarnwick", "Lumbrine", {.port = 5001});
    ASSERT_TRUE(other.trackList());
    EXPECT_TRUE(scripted.requests.empty());
    EXPECT_THAT(elsewhere.commands(), ElementsAre(registerCommand, trackListCommand));
    const Bytes headers = elsewhere.framesOfType(1).at(0).payload;
    EXPECT_EQ(std::string(headers.begin() + 32, headers.begin() + 46), "127.0.0.1:5001");
}

TEST_F(Commands, CarryTheSessionAndTheVersionAfterRegistering) {
    ASSERT_TRUE(client.trackList());
    ASSERT_TRUE(client.setSolo({"Kick"}, true));
    ASSERT_EQ(scripted.requests.size(), 3u);
    EXPECT_EQ(scripted.requests[0].session, "");
    EXPECT_EQ(scripted.requests[1].session, "S-1");
    EXPECT_EQ(scripted.requests[2].session, "S-1");
    for (const Request& request : scripted.requests)
        EXPECT_EQ(request.version, 5u);
}

TEST_F(Commands, AddressTracksByNamesThatNeedLongLengths) {
    std::vector<std::string> names;
    for (int i = 0; i < 1000; ++i)
        names.push_back("トラック " + std::to_string(i) + std::string(40, 'x'));
    ASSERT_TRUE(client.setMute(names, true));
    const Array expected(names.begin(), names.end());
    EXPECT_EQ(argumentsOf(scripted.requests.at(1)), (Object{{"track_names", expected}, {"enabled", true}}));
}

TEST_F(Commands, AreNotSentWhenTheirArgumentsAreNoText) {
    ASSERT_TRUE(client.trackList());
    const auto result = client.setMute({"Kick\xE3"}, true);
    EXPECT_EQ(errorOf(result), "text that is not UTF-8 cannot be written as JSON");
    EXPECT_EQ(scripted.requests.size(), 2u);
}

// A system whose JSON is no text.
class BrokenJSON final : public JSON {
public:
    explicit BrokenJSON(JSON& reader) : reader(reader) {}
    std::expected<std::string, JSONError> serialise(const JSONValue::Object&) override { return "{\"a\":\"\xFF\"}"; }
    std::expected<JSONValue, JSONError> parse(std::string_view text) override { return reader.parse(text); }

private:
    JSON& reader;
};

TEST_F(Commands, AreSentWithoutArgumentsWhenTheSystemsJSONIsNoText) {
    BrokenJSON broken(json);
    PTSLClient other(runtime, streams, broken, Bilingual(false), "Tarnwick", "Lumbrine");
    ASSERT_TRUE(other.setMute({"Kick"}, true));
    for (const Request& request : scripted.requests)
        EXPECT_EQ(request.json, "{}");
}

} // namespace
} // namespace lumbrine::service
