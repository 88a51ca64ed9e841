// For tests: a scripting service that parses requests and answers each command as the test decides.
#pragma once

#include "platform/portable/nlohmann_json.h"
#include "platform/virtual/virtual_streams.h"
#include "ptsl/ptsl_client.h"
#include "ptsl/testing/scripted_service.h"
#include "simulator/wire/grpc_connection.h"

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace lumbrine::service {

struct Request {
    std::uint64_t command;
    std::uint64_t version;
    std::string session;
    std::string json;
};

// Build response messages.
Bytes reply(const std::string& json);
Bytes failure(const std::string& errorJSON, std::uint64_t status = 4);

// Uses libnghttp2 and the generated classes. A test of exact bytes sets `answer` and sends its own.
class EnvelopeService : public ScriptedService {
public:
    explicit EnvelopeService(VirtualStreams& virtualStreams, std::uint16_t atPort = port);

    // The answers by command. Without an entry, registering returns the session "S-1" and every other command an empty
    // object.
    std::map<std::uint64_t, std::function<Bytes(const Request&)>> answers;

    std::vector<Request> requests;

    std::vector<std::uint64_t> commands() const;

private:
    struct FarEnd {
        wire::GrpcConnection grpc;
        std::size_t read = 0; // bytes of the connection that are parsed
    };

    Bytes answerTo(const Bytes& message);

    std::map<std::size_t, FarEnd> farEnds; // by connection
};

// A client and its service in virtual time.
class ClientTest : public testing::Test {
protected:
    static constexpr std::uint64_t trackListCommand = 3;
    static constexpr std::uint64_t registerCommand = 70;
    static constexpr std::uint64_t muteCommand = 85;
    static constexpr std::uint64_t soloCommand = 86;
    static constexpr std::uint64_t inputMonitorCommand = 90;

    void answer(std::uint64_t command, const Bytes& message) {
        scripted.answers[command] = [message](const Request&) { return message; };
    }

    // The parsed arguments of a request.
    JSONValue::Object argumentsOf(const Request& request);

    template <typename Value>
    static std::string errorOf(const PTSLClient::Result<Value>& result, Bilingual text = Bilingual(false)) {
        return result ? "no error" : description(result.error(), text);
    }

    // The error texts of a failing track list in both languages.
    std::pair<std::string, std::string> textsOfTrackList();

    VirtualRuntime runtime;
    VirtualStreams streams{runtime};
    EnvelopeService scripted{streams};
    NlohmannJSON json{Bilingual(false)};
    NlohmannJSON japaneseJSON{Bilingual(true)};
    PTSLClient client{runtime, streams, json, Bilingual(false), "Tarnwick", "Lumbrine"};
};

using Texts = std::pair<std::string, std::string>;

} // namespace lumbrine::service
