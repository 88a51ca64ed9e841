#include "ptsl/ptsl_client.h"

#include "base/utf8.h"

#include <array>
#include <variant>

namespace lumbrine {

namespace {

constexpr const char* path = "/ptsl.PTSL/SendGrpcRequest";
constexpr double timeout = 3.0; // seconds for each step of a call, see PTSLWire
constexpr int pageLimit = 1000;
constexpr std::array<std::uint64_t, 4> versions{newestVersion, 4, 3, 1}; // there was no 2
constexpr std::size_t mostOfAnError = 400;                               // bytes of the service's text

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

PTSLClient::PTSLClient(Runtime& runtime, StreamSockets& sockets, JSON& json, Bilingual text, std::string companyName,
                       std::string applicationName, const PTSLAddress& service)
    : json(json), text(text), wire(runtime, sockets, text, service.host, service.port, timeout),
      companyName(std::move(companyName)), applicationName(std::move(applicationName)) {}

PTSLClient::Result<void> PTSLClient::prepare() {
    if (!wire.isOpen())
        if (const auto opened = wire.open(); !opened) return std::unexpected(opened.error());
    return registerIfNeeded();
}

PTSLClient::Result<std::vector<PTSLTrack>> PTSLClient::trackList() {
    if (const auto registered = registerIfNeeded(); !registered) return std::unexpected(registered.error());
    const JSONValue::Object body = trackListBody();
    auto reply = run(PTSLCommand::trackList, body);
    if (!reply && isForgotten(reply.error())) {
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
    if (reply) return {};
    if (!isForgotten(reply.error())) return std::unexpected(reply.error());
    return std::unexpected(PTSLError::commandFailed(std::get<PTSLError>(reply.error()).detail, PTSLRefusal::sessionID));
}

namespace {

// Services differ in the number for a session they do not know.
bool mayMeanAnUnknownSession(const PTSLFailure& failure) {
    const auto* const error = std::get_if<PTSLError>(&failure);
    if (error == nullptr || error->kind != PTSLError::Case::commandFailed) return false;
    switch (error->refusal) {
    case PTSLRefusal::none:
    case PTSLRefusal::unknownError:
    case PTSLRefusal::invalidParameter:
    case PTSLRefusal::forbidden:
    case PTSLRefusal::sessionID:
    case PTSLRefusal::versionMismatch: // another Pro Tools, older than the one before
        return true;
    default:
        return false;
    }
}

} // namespace

// Where the session has just been registered, each number means what it says; to register again would only fill the
// service with sessions.
bool PTSLClient::isForgotten(const PTSLFailure& failure) {
    if (sessionIsNew || !mayMeanAnUnknownSession(failure)) return false;
    sessionID.clear();
    return true;
}

PTSLClient::Result<void> PTSLClient::registerIfNeeded() {
    return sessionID.empty() ? registerAnew() : Result<void>();
}

PTSLClient::Result<void> PTSLClient::registerAnew() {
    const JSONValue::Object body{{"company_name", companyName}, {"application_name", applicationName}};
    Result<JSONValue::Object> reply = std::unexpected(PTSLError::unfinished());
    for (const std::uint64_t known : versions) {
        version = known;
        reply = run(PTSLCommand::registerClient, body);
        const auto* const error = reply ? nullptr : std::get_if<PTSLError>(&reply.error());
        if (error == nullptr || error->refusal != PTSLRefusal::versionMismatch) break;
    }
    if (!reply) return std::unexpected(reply.error());
    // The service may write names in snake case or in camel case.
    const JSONValue* const snakeCase = reply->find("session_id");
    const bool isText = snakeCase != nullptr && snakeCase->as<std::string>() != nullptr;
    std::string received = textMember(*reply, isText ? "session_id" : "sessionId");
    if (received.empty())
        return std::unexpected(
            PTSLError::malformedResponse(text("no session_id returned", "session_id が返らなかった")));
    sessionID = std::move(received);
    sessionIsNew = true;
    return {};
}

PTSLClient::Result<JSONValue::Object> PTSLClient::run(PTSLCommand command, const JSONValue::Object& body) {
    auto arguments = json.serialise(body);
    if (!arguments) return std::unexpected(arguments.error());
    const std::string_view sent = isUTF8(*arguments) ? std::string_view(*arguments) : "{}";
    const bool isQuestion = command == PTSLCommand::registerClient || command == PTSLCommand::trackList;
    auto message = call(requestEnvelope(command, sessionID, sent, version), isQuestion ? 2 : 1);
    if (!message) return std::unexpected(std::move(message.error()));
    const auto response = responseEnvelope(*std::move(message), text);
    if (!response) return std::unexpected(response.error());
    auto reply = replyIn(command, *response);
    if (reply || !mayMeanAnUnknownSession(reply.error())) sessionIsNew = false;
    return reply;
}

std::expected<Bytes, PTSLError> PTSLClient::call(ByteView request, int attempts) {
    auto message = wire.call(path, request);
    if (message) return message;
    close();
    // Without a listener a second attempt would fail in the same way.
    if (attempts == 1 || message.error().kind == PTSLError::Case::notRunning) return message;
    return call(request, attempts - 1);
}

void PTSLClient::close() {
    wire.close();
    sessionIsNew = false; // it may have ended with its connection
}

PTSLClient::Result<JSONValue::Object> PTSLClient::replyIn(PTSLCommand command, const ResponseEnvelope& response) {
    if (response.hasFailed()) return std::unexpected(refusedWith(response.errorJSON));
    if (response.isUnfinished()) return std::unexpected(PTSLError::unfinished());
    if (response.replyJSON.empty()) {
        // While a session is opened or saved, the list may come empty.
        if (command == PTSLCommand::trackList) return std::unexpected(PTSLError::unfinished());
        return JSONValue::Object();
    }
    auto reply = json.parse(response.replyJSON);
    if (!reply) return std::unexpected(std::move(reply.error()));
    auto* const object = std::get_if<JSONValue::Object>(&reply->content);
    if (object == nullptr)
        return std::unexpected(
            PTSLError::malformedResponse(text("response JSON is not a dictionary", "応答 JSON が辞書でない")));
    return std::move(*object);
}

PTSLError PTSLClient::refusedWith(const std::string& errorJSON) {
    if (errorJSON.empty()) return PTSLError::commandFailed(text("unknown reason", "理由不明"));
    const auto parsed = json.parse(errorJSON);
    std::string line(utf8Clamp(errorJSON, mostOfAnError));
    for (char& character : line)
        if (static_cast<unsigned char>(character) < ' ') character = ' ';
    return PTSLError::commandFailed(std::move(line), parsed ? refusalIn(*parsed) : PTSLRefusal::none);
}

} // namespace lumbrine
