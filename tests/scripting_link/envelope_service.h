// A scripting service that understands requests and answers each command as a test has laid down.
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

// Response messages.
Bytes reply(const std::string& json);
Bytes failure(const std::string& errorJSON, std::uint64_t status = 4);

// It answers by libnghttp2 and the generated classes. Where bytes matter, a test sets `answer` and sends its own.
class EnvelopeService : public ScriptedService {
public:
    explicit EnvelopeService(VirtualStreams& virtualStreams, std::uint16_t atPort = port);

    // The message with which each command is answered: registering gives the session "S-1", every other command an
    // empty object, unless something else is laid down.
    std::map<std::uint64_t, std::function<Bytes(const Request&)>> answers;

    std::vector<Request> requests;

    std::vector<std::uint64_t> commands() const;

private:
    struct FarEnd {
        wire::GrpcConnection grpc;
        std::size_t read = 0; // of what the connection received
    };

    Bytes answerTo(const Bytes& message);

    std::map<std::size_t, FarEnd> farEnds; // of the connections
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

    // What that request's arguments say.
    JSONValue::Object argumentsOf(const Request& request);

    template <typename Value>
    static std::string errorOf(const PTSLClient::Result<Value>& result, Bilingual text = Bilingual(false)) {
        return result ? "no error" : description(result.error(), text);
    }

    // The texts of a failing track list in both languages, each by a client of its own.
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
