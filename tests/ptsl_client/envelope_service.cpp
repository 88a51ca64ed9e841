#include "tests/ptsl_client/envelope_service.h"

#include <scripting.pb.h>

#include <utility>

namespace lumbrine::service {

namespace {

Bytes bytesOf(const ::ptsl::Response& envelope) {
    const std::string bytes = envelope.SerializeAsString();
    return {bytes.begin(), bytes.end()};
}

Request requestIn(const Bytes& message) {
    ::ptsl::Request envelope;
    EXPECT_TRUE(envelope.ParseFromArray(message.data(), static_cast<int>(message.size())));
    return {static_cast<std::uint64_t>(envelope.header().command()),
            static_cast<std::uint64_t>(envelope.header().version()), envelope.header().session_id(),
            envelope.request_body_json()};
}

} // namespace

Bytes reply(const std::string& json) {
    ::ptsl::Response envelope;
    envelope.mutable_header()->set_status(3);
    envelope.set_response_body_json(json);
    return bytesOf(envelope);
}

Bytes failure(const std::string& errorJSON, std::uint64_t status) {
    ::ptsl::Response envelope;
    envelope.mutable_header()->set_status(static_cast<std::int32_t>(status));
    envelope.set_response_error_json(errorJSON);
    return bytesOf(envelope);
}

EnvelopeService::EnvelopeService(VirtualStreams& virtualStreams, std::uint16_t atPort)
    : ScriptedService(virtualStreams, atPort) {
    answers[70] = [](const Request&) { return reply(R"({"session_id":"S-1"})"); };
    answer = [this](Call& call) {
        FarEnd& farEnd = farEnds[call.connection];
        const Bytes& all = received.at(call.connection - 1);
        farEnd.grpc.receive(ByteView(all).subspan(std::exchange(farEnd.read, all.size())));
        for (const wire::GrpcConnection::Call& whole : farEnd.grpc.takeCalls())
            if (std::cmp_equal(whole.stream, call.stream)) farEnd.grpc.reply(whole.stream, answerTo(whole.message));
        call.line.send(farEnd.grpc.takeOutput());
    };
}

Bytes EnvelopeService::answerTo(const Bytes& message) {
    requests.push_back(requestIn(message));
    const auto laidDown = answers.find(requests.back().command);
    return laidDown == answers.end() ? reply("{}") : laidDown->second(requests.back());
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
