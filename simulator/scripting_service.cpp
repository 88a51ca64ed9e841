#include "simulator/scripting_service.h"

#include "simulator/scripting_json.h"
#include "simulator/scripting_setter.h"
#include "simulator/scripting_track_list.h"

#include <algorithm>
#include <array>
#include <utility>

namespace lumbrine {

namespace {

// The numbers of the commands in the protocol.
enum Command : std::int32_t {
    trackListCommand = 3,
    hostReadyCheckCommand = 13,
    sessionNameCommand = 42,
    registerCommand = 70,
    setMuteCommand = 85,
    setSoloCommand = 86,
    setRecordEnableCommand = 88,
    setInputMonitorCommand = 90,
};

constexpr std::array served{trackListCommand, hostReadyCheckCommand, sessionNameCommand,     registerCommand,
                            setMuteCommand,   setSoloCommand,        setRecordEnableCommand, setInputMonitorCommand};

constexpr std::int32_t done = 100; // per cent

std::unexpected<ScriptingFailure> failure(ScriptingError error, std::string message) {
    return std::unexpected(ScriptingFailure{error, std::move(message)});
}

std::unexpected<ScriptingFailure> invalidBody() {
    return failure(ScriptingError::invalidParameter, "The request body is not what the command takes");
}

std::unexpected<ScriptingFailure> noOpenSession() {
    return failure(ScriptingError::noOpenSession, "No session is open");
}

std::unexpected<ScriptingFailure> busy(BusyError error) {
    switch (error) {
    case BusyError::hostNotReady:
        return failure(ScriptingError::hostNotReady, "The host is not ready");
    case BusyError::commandTimedOut:
        return failure(ScriptingError::commandTimedOut, "The command timed out");
    case BusyError::hostIsBusy:
        break;
    }
    return failure(ScriptingError::hostIsBusy, "The host is busy");
}

bool isText(const ScriptingJSON& object, std::string_view key) {
    const ScriptingJSON* const value = valueOf(object, key);
    return value != nullptr && value->is_string() && !value->get_ref<const std::string&>().empty();
}

} // namespace

ScriptingService::ScriptingService(const ScriptingOptions& options, std::uint64_t seed, EditSession edit,
                                   TimePoint start, NoteSwitch note)
    : options(options), edit(std::move(edit)), note(std::move(note)),
      registrations(seed, options.registrationOutlivesConnection), chance(seed + 1),
      readyAt(start + options.readyAfter), busyOneIn(options.busyOneIn) {}

ScriptingReply ScriptingService::answer(const ScriptingRequest& request, std::string_view connection, TimePoint now) {
    ScriptingReply reply = replyTo(request);
    if (Result result = run(request, connection, now)) {
        reply.status = ScriptingStatus::completed;
        reply.bodyJSON = std::move(*result);
    } else {
        reply.status = ScriptingStatus::failed;
        reply.errorJSON = errorJSON(result.error(), options.errorTypes);
    }
    return reply;
}

ScriptingReply ScriptingService::replyTo(const ScriptingRequest& request) const {
    ScriptingReply reply;
    reply.taskID = request.taskID;
    reply.command = request.command;
    reply.progress = done;
    reply.version = options.version;
    return reply;
}

ScriptingReply ScriptingService::refusal(const ScriptingRequest& request) const {
    ScriptingReply reply = replyTo(request);
    reply.status = ScriptingStatus::failed;
    reply.errorJSON = errorJSON(noOpenSession().error(), options.errorTypes);
    return reply;
}

ScriptingReply ScriptingService::inProgress(const ScriptingRequest& request) const {
    ScriptingReply reply = replyTo(request);
    reply.status = static_cast<ScriptingStatus>(options.unfinished);
    reply.progress = 0;
    return reply;
}

ScriptingService::Result ScriptingService::run(const ScriptingRequest& request, std::string_view connection,
                                               TimePoint now) {
    // The order of these checks decides which error a request with several faults gets: version, readiness, load,
    // unknown command, unknown session, and last the command's own errors.
    if (request.version > options.version)
        return failure(ScriptingError::versionMismatch,
                       "Version " + std::to_string(request.version) + " is not supported");
    // Once per request, before any return: each call takes one from the current run of refusals.
    const bool refused = refuses();
    if (request.command == hostReadyCheckCommand) return isHostReady(!refused && now >= readyAt);
    if (now < readyAt) return busy(BusyError::hostNotReady);
    if (refused) return busy(options.busyError);
    if (std::ranges::find(served, request.command) == served.end())
        return failure(ScriptingError::unsupportedCommand,
                       "Command " + std::to_string(request.command) + " is not supported");
    if (request.command == registerCommand) return registerApplication(request.bodyJSON, connection);
    if (!registrations.knows(request.sessionID, connection))
        return failure(static_cast<ScriptingError>(options.unknownSession),
                       "The session id \"" + request.sessionID + "\" is not known");

    switch (request.command) {
    case trackListCommand:
        return trackList(request.bodyJSON);
    case sessionNameCommand:
        return sessionName();
    case setMuteCommand:
        return set(request, &SimulatedTrack::mute);
    case setSoloCommand:
        return set(request, &SimulatedTrack::solo);
    case setRecordEnableCommand:
        return set(request, &SimulatedTrack::recordArmed);
    default:
        return set(request, &SimulatedTrack::inputMonitor);
    }
}

bool ScriptingService::refuses() {
    if (toRefuse == 0 && busyOneIn > 0 && chance.oneIn(static_cast<std::uint64_t>(busyOneIn)))
        toRefuse = options.busyBurst;
    if (toRefuse == 0) return false;
    --toRefuse;
    return true;
}

ScriptingService::Result ScriptingService::isHostReady(bool ready) const {
    if (!ready && options.readyCheckFails) return busy(BusyError::hostNotReady);
    ScriptingJSON body = ScriptingJSON::object();
    body[spelledKey("is_host_ready", options.camelCase)] = ready;
    return textOf(body);
}

ScriptingService::Result ScriptingService::registerApplication(std::string_view text, std::string_view connection) {
    const std::optional<ScriptingJSON> body = objectOf(text);
    if (!body || !isText(*body, "company_name") || !isText(*body, "application_name")) return invalidBody();
    ScriptingJSON reply = ScriptingJSON::object();
    reply[spelledKey("session_id", options.camelCase)] = registrations.add(connection);
    return textOf(reply);
}

ScriptingService::Result ScriptingService::sessionName() const {
    Result result = noOpenSession();
    edit([&](const SimulatedSession& session) {
        if (!session.isOpen()) return;
        ScriptingJSON body = ScriptingJSON::object();
        body[spelledKey("session_name", options.camelCase)] = session.name();
        result = textOf(body);
    });
    return result;
}

ScriptingService::Result ScriptingService::trackList(std::string_view body) const {
    const std::optional<TrackListRequest> request = parseTrackListRequest(body);
    if (!request) return invalidBody();
    std::optional<TrackPage> page;
    edit([&](const SimulatedSession& session) {
        if (session.isOpen()) page = pageOf(session, *request, options);
    });
    if (!page && options.closedSessionListsNothing) page = emptyPage(*request, options);
    if (!page) return noOpenSession();
    return trackListJSON(*page, options);
}

ScriptingService::Result ScriptingService::set(const ScriptingRequest& request, bool SimulatedTrack::* flag) const {
    const std::optional<SetRequest> wish = parseSetRequest(request.bodyJSON);
    if (!wish) return invalidBody();
    Result result = noOpenSession();
    edit([&](SimulatedSession& session) {
        if (!session.isOpen()) return;
        if (std::optional<ScriptingFailure> problem = setOnTracks(session, *wish, flag)) {
            result = std::unexpected(std::move(*problem));
            return;
        }
        result = "{}";
        if (!note) return;
        for (const std::string& name : wish->trackNames)
            note(request.command, wish->enabled, session.findByName(name)->id);
    });
    return result;
}

void ScriptingService::restart(TimePoint now) {
    registrations.clear();
    readyAt = now + options.readyAfter;
    toRefuse = 0;
}

void ScriptingService::refuseNext(int requests) {
    toRefuse = requests;
}

void ScriptingService::rest() {
    toRefuse = 0;
    busyOneIn = 0;
}

} // namespace lumbrine
