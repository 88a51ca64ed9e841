#include "tests/scripting_link/envelope_service.h"

#include "ptsl/testing/service_frames.h"

namespace lumbrine::service {

namespace {

// Fields as the service writes them: numbers below 128 only, lengths in two bytes.
void appendNumber(Bytes& message, std::uint8_t field, std::uint64_t value) {
    message.push_back(static_cast<std::uint8_t>(field << 3));
    message.push_back(static_cast<std::uint8_t>(value));
}

void appendBytes(Bytes& message, std::uint8_t field, const Bytes& bytes) {
    if (bytes.empty()) return;
    message.push_back(static_cast<std::uint8_t>(field << 3 | 2));
    std::size_t length = bytes.size();
    for (; length > 127; length >>= 7)
        message.push_back(static_cast<std::uint8_t>(0x80 | (length & 0x7F)));
    message.push_back(static_cast<std::uint8_t>(length));
    message.insert(message.end(), bytes.begin(), bytes.end());
}

Bytes bytesOf(const std::string& text) {
    return {text.begin(), text.end()};
}

Bytes envelope(std::uint64_t status, const std::string& replyJSON, const std::string& errorJSON) {
    Bytes header;
    appendNumber(header, 3, status);
    Bytes message;
    appendBytes(message, 1, header);
    appendBytes(message, 2, bytesOf(replyJSON));
    appendBytes(message, 3, bytesOf(errorJSON));
    return message;
}

class Fields {
public:
    explicit Fields(const Bytes& message) {
        for (std::size_t at = 0; at < message.size();) {
            const std::uint64_t tag = varint(message, at);
            const std::uint64_t value = varint(message, at);
            if ((tag & 7) == 0) {
                numbers[tag >> 3] = value;
            } else {
                const auto begin = message.begin() + static_cast<std::ptrdiff_t>(at);
                texts[tag >> 3] = Bytes(begin, begin + static_cast<std::ptrdiff_t>(value));
                at += value;
            }
        }
    }

    std::map<std::uint64_t, std::uint64_t> numbers;
    std::map<std::uint64_t, Bytes> texts;

private:
    static std::uint64_t varint(const Bytes& message, std::size_t& at) {
        std::uint64_t value = 0;
        for (int shift = 0;; shift += 7) {
            const std::uint8_t byte = message.at(at++);
            value |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
            if (byte < 0x80) return value;
        }
    }
};

std::string textOf(const Bytes& bytes) {
    return {bytes.begin(), bytes.end()};
}

Request requestIn(const Bytes& message) {
    Fields request(message);
    Fields header(request.texts[1]);
    return {header.numbers[2], header.numbers[3], textOf(header.texts[4]), textOf(request.texts[2])};
}

} // namespace

Bytes reply(const std::string& json) {
    return envelope(3, json, "");
}

Bytes failure(const std::string& errorJSON, std::uint64_t status) {
    return envelope(status, "", errorJSON);
}

EnvelopeService::EnvelopeService(VirtualStreams& virtualStreams, std::uint16_t atPort)
    : ScriptedService(virtualStreams, atPort) {
    answers[70] = [](const Request&) { return reply(R"({"session_id":"S-1"})"); };
    answer = [this](Call& call) {
        requests.push_back(requestIn(call.message));
        const auto laidDown = answers.find(requests.back().command);
        const Bytes message = laidDown == answers.end() ? reply("{}") : laidDown->second(requests.back());
        call.line.send(response(call.stream, message));
    };
}

std::vector<std::uint64_t> EnvelopeService::commands() const {
    std::vector<std::uint64_t> all;
    all.reserve(requests.size());
    for (const Request& request : requests)
        all.push_back(request.command);
    return all;
}

JSONValue::Object ClientTest::argumentsOf(const Request& request) {
    const auto parsed = json.parse(request.json);
    const auto* const object = parsed ? parsed->as<JSONValue::Object>() : nullptr;
    EXPECT_NE(object, nullptr) << request.json;
    return object == nullptr ? JSONValue::Object() : *object;
}

Texts ClientTest::textsOfTrackList() {
    PTSLClient english(runtime, streams, json, Bilingual(false), "Tarnwick", "Lumbrine");
    PTSLClient japanese(runtime, streams, japaneseJSON, Bilingual(true), "Tarnwick", "Lumbrine");
    std::string first = errorOf(english.trackList());
    return {std::move(first), errorOf(japanese.trackList(), Bilingual(true))};
}

} // namespace lumbrine::service
