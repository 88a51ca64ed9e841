// Executes the commands of the scripting service: requests in, replies out, on the session that the surfaces show.
//
// It has no thread, no clock and no wire. Not synchronised: the owner guards it.
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
    // Runs the given function on the session, then returns.
    using EditSession = std::function<void(const std::function<void(SimulatedSession&)>&)>;

    // Called for each track that a command has switched, while the session is edited.
    using NoteSwitch = std::function<void(std::int32_t command, bool enabled, int trackID)>;

    // Precondition: the options are valid (problemWith).
    ScriptingService(const ScriptingOptions& options, std::uint64_t seed, EditSession edit, TimePoint start,
                     NoteSwitch note = {});

    // `connection` is a name for the connection of the request that no other connection has had; registrations depend
    // on it. `now` must not decrease.
    ScriptingReply answer(const ScriptingRequest& request, std::string_view connection, TimePoint now);

    // The reply to any request while the program shows a dialog: 106, although a session is open.
    ScriptingReply refusal(const ScriptingRequest& request) const;

    // The reply to any request while a session is opened or saved: no result and no body.
    ScriptingReply inProgress(const ScriptingRequest& request) const;

    // Acts like a restart of Pro Tools: all session identifiers become unknown, and the host is not ready for a while.
    void restart(TimePoint now);

    // Refuses this many of the next requests as a busy host does.
    void refuseNext(int requests);

    // Ends the faults: the host is not busy any more.
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
    Result set(const ScriptingRequest& request, bool SimulatedTrack::* flag) const;

    const ScriptingOptions options;
    const EditSession edit;
    const NoteSwitch note;
    ScriptingRegistrations registrations;
    SeededRandom chance;
    TimePoint readyAt;
    int toRefuse = 0;
    int busyOneIn;
};

} // namespace lumbrine
