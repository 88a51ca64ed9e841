// What the scripting service does with each command: requests in, replies out, on the session that the surfaces show.
//
// No thread, no clock and no wire of its own; belongs to whoever guards it.
#pragma once

#include "platform/api/time.h"
#include "simulator/scripting_error.h"
#include "simulator/scripting_message.h"
#include "simulator/scripting_options.h"
#include "simulator/scripting_registrations.h"
#include "simulator/seeded_random.h"
#include "simulator/simulated_session.h"

#include <cstdint>
#include <expected>
#include <functional>
#include <string>
#include <string_view>

namespace lumbrine {

class ScriptingService {
public:
    // Runs the given function on the session before it returns.
    using EditSession = std::function<void(const std::function<void(SimulatedSession&)>&)>;

    // The options have no problem (problemWith).
    ScriptingService(const ScriptingOptions& chosen, std::uint64_t seed, EditSession editSession, TimePoint start);

    // The connection that the request came by, by any name that no other connection has had: with the connection its
    // registrations end. Time does not go backwards.
    ScriptingReply answer(const ScriptingRequest& request, std::string_view connection, TimePoint now);

    // To whatever is asked while the program shows a dialog: 106, although a session is open.
    ScriptingReply refusal(const ScriptingRequest& request) const;

    // To whatever is asked while a session is opened or saved: no result, and no body.
    ScriptingReply inProgress(const ScriptingRequest& request) const;

    // As after a restart of Pro Tools: no earlier session identifier is known, and it takes its time to be ready.
    void restart(TimePoint now);

    // As many of the next requests are refused as a busy host refuses them.
    void refuseNext(int requests);

    // The host is busy no more.
    void rest();

private:
    using Result = std::expected<std::string, ScriptingFailure>; // the body of the reply

    Result run(const ScriptingRequest& request, std::string_view connection, TimePoint now);
    ScriptingReply replyTo(const ScriptingRequest& request) const;
    bool refuses();
    Result isHostReady(bool ready) const;
    Result registerApplication(std::string_view body, std::string_view connection);
    Result sessionName() const;
    Result trackList(std::string_view body) const;
    Result set(std::string_view body, bool SimulatedTrack::* flag) const;

    const ScriptingOptions options;
    const EditSession edit;
    ScriptingRegistrations registrations;
    SeededRandom chance;
    TimePoint readyAt;
    int toRefuse = 0;
    int busyOneIn;
};

} // namespace lumbrine
