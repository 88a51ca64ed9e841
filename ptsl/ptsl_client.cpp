#include "ptsl/ptsl_client.h"

#include "base/utf8.h"

namespace lumbrine {

namespace {

constexpr const char* path = "/ptsl.PTSL/SendGrpcRequest";
constexpr double timeout = 3.0; // seconds for each step of a call, see PTSLWire
constexpr int pageLimit = 1000;

JSONValue::Object trackListBody() {
    return {
        {"page_limit", pageLimit},
        {"track_filter_list", JSONValue::Array{JSONValue::Object{{"filter", "All"}, {"is_inverted", false}}}},
        {"is_filter_list_additive", false},
        {"pagination_request", JSONValue::Object{{"limit", pageLimit}, {"offset", 0}}},
    };
}

std::string textMember(const JSONValue::Object& object, std::string_view key) {
    const JSONValue* const value = object.find(key);
    const auto* const text = value == nullptr ? nullptr : value->as<std::string>();
    return text == nullptr ? std::string() : *text;
}

} // namespace

PTSLClient::PTSLClient(Runtime& runtime, StreamSockets& sockets, JSON& systemJSON, Bilingual bilingual,
                       std::string company, std::string application, const PTSLAddress& service)
    : json(systemJSON), text(bilingual), wire(runtime, sockets, bilingual, service.host, service.port, timeout),
      companyName(std::move(company)), applicationName(std::move(application)) {}

PTSLClient::Result<std::vector<PTSLTrack>> PTSLClient::trackList() {
    if (const auto registered = registerIfNeeded(); !registered) return std::unexpected(registered.error());
    const JSONValue::Object body = trackListBody();
    auto reply = run(PTSLCommand::trackList, body);
    if (!reply && isCommandFailed(reply.error())) {
        sessionID.clear();
        if (const auto registered = registerAnew(); !registered) return std::unexpected(registered.error());
        reply = run(PTSLCommand::trackList, body);
    }
    if (!reply) return std::unexpected(reply.error());
    return tracksFrom(*reply);
}

PTSLClient::Result<void> PTSLClient::setMute(const std::vector<std::string>& trackNames, bool enabled) {
    return set(PTSLCommand::setMute, trackNames, enabled);
}

PTSLClient::Result<void> PTSLClient::setSolo(const std::vector<std::string>& trackNames, bool enabled) {
    return set(PTSLCommand::setSolo, trackNames, enabled);
}

PTSLClient::Result<void> PTSLClient::setInputMonitor(const std::string& trackName, bool enabled) {
    return set(PTSLCommand::setInputMonitor, {trackName}, enabled);
}

PTSLClient::Result<void> PTSLClient::set(PTSLCommand command, const std::vector<std::string>& trackNames,
                                         bool enabled) {
    if (auto registered = registerIfNeeded(); !registered) return registered;
    const JSONValue::Array names(trackNames.begin(), trackNames.end());
    const auto reply = run(command, {{"track_names", names}, {"enabled", enabled}});
    if (!reply) return std::unexpected(reply.error());
    return {};
}

PTSLClient::Result<void> PTSLClient::registerIfNeeded() {
    return sessionID.empty() ? registerAnew() : Result<void>();
}

PTSLClient::Result<void> PTSLClient::registerAnew() {
    const auto reply =
        run(PTSLCommand::registerClient, {{"company_name", companyName}, {"application_name", applicationName}});
    if (!reply) return std::unexpected(reply.error());
    // The service may write names in snake case or in camel case.
    const JSONValue* const snakeCase = reply->find("session_id");
    const bool isText = snakeCase != nullptr && snakeCase->as<std::string>() != nullptr;
    std::string received = textMember(*reply, isText ? "session_id" : "sessionId");
    if (received.empty())
        return std::unexpected(
            PTSLError::malformedResponse(text("no session_id returned", "session_id が返らなかった")));
    sessionID = std::move(received);
    return {};
}

PTSLClient::Result<JSONValue::Object> PTSLClient::run(PTSLCommand command, const JSONValue::Object& body) {
    auto arguments = json.serialise(body);
    if (!arguments) return std::unexpected(arguments.error());
    const std::string_view sent = isUTF8(*arguments) ? std::string_view(*arguments) : "{}";
    auto message = callTwice(requestEnvelope(command, sessionID, sent));
    if (!message) return std::unexpected(std::move(message.error()));
    const auto response = responseEnvelope(*std::move(message), text);
    if (!response) return std::unexpected(response.error());
    return replyIn(*response);
}

std::expected<Bytes, PTSLError> PTSLClient::callTwice(ByteView request) {
    auto message = wire.call(path, request);
    if (message) return message;
    wire.close();
    // Without a listener a second attempt would fail in the same way.
    if (message.error().kind == PTSLError::Case::notRunning) return message;
    message = wire.call(path, request);
    if (!message) wire.close();
    return message;
}

PTSLClient::Result<JSONValue::Object> PTSLClient::replyIn(const ResponseEnvelope& response) {
    if (response.status == ResponseEnvelope::failedStatus)
        return std::unexpected(PTSLError::commandFailed(response.errorJSON.empty() ? text("unknown reason", "理由不明")
                                                                                   : response.errorJSON));
    if (response.replyJSON.empty()) return JSONValue::Object();
    auto reply = json.parse(response.replyJSON);
    if (!reply) return std::unexpected(std::move(reply.error()));
    auto* const object = std::get_if<JSONValue::Object>(&reply->content);
    if (object == nullptr)
        return std::unexpected(
            PTSLError::malformedResponse(text("response JSON is not a dictionary", "応答 JSON が辞書でない")));
    return std::move(*object);
}

} // namespace lumbrine
