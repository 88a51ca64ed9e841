// Options for the scripting service of the simulated Pro Tools: spellings in which versions of the real one differ, and
// faults.
#pragma once

#include "platform/api/time.h"

#include <cstddef>
#include <optional>
#include <string>

namespace lumbrine {

// The spelling of an attribute with four values, which can be set on a track, implied by another setting, or both.
enum class AttributeSpelling {
    names,         // "SetExplicitly"
    prefixedNames, // "TAState_SetExplicitly"
    numbers,       // 1 none, 2 explicitly, 3 implicitly, 4 both
};

enum class ErrorTypeSpelling {
    number,       // 138
    digits,       // "138"
    name,         // "PT_HostIsBusy"
    prefixedName, // "CEType_PT_HostIsBusy"
};

// The error for an unknown session identifier.
enum class UnknownSessionError { unknownError = 100, invalidParameter = 126, forbidden = 127, sessionID = 403 };

// The treatment of commands while the program shows a dialog.
enum class DialogAnswer {
    refusal,  // all of them fail with 106, although a session is open
    deferral, // they fail with 106, but are executed when the dialog is closed
    silence,  // they are answered when the dialog is closed
};

// The error of a service that is busy.
enum class BusyError { hostNotReady = 134, commandTimedOut = 137, hostIsBusy = 138 };

// The status of a reply that is no result, by its number.
enum class Unfinished { queued, pending, inProgress };

struct ScriptingOptions {
    // ---- The form of replies.
    AttributeSpelling attributes = AttributeSpelling::names;
    ErrorTypeSpelling errorTypes = ErrorTypeSpelling::number;
    bool camelCase = false;         // keys in camel case, as in older versions
    bool emptyListAsObject = false; // {} instead of []
    bool statsForPages = false;     // "stats" instead of "pagination_response", as in older versions
    int version = 5;                // 1 to 5; requests of a later version are refused
    UnknownSessionError unknownSession = UnknownSessionError::sessionID;
    bool readyCheckFails = false;           // while the host is not ready, the ready check fails
    bool closedSessionListsNothing = false; // without a session the track list is empty instead of a failure
    bool armedMonitors = false;             // arming a track for recording implies input monitoring
    std::size_t pageLimit = 1000;           // the most tracks in one reply
    int miscount = 0;                       // the track list has this many tracks too many, or too few if negative

    // ---- Registrations and times.
    bool registrationOutlivesConnection = false;
    Duration commandTime = Duration::zero(); // from a request to its execution
    Duration readyAfter = Duration::zero();  // from the start until the host is ready

    // ---- Dialogs, and opening and saving of sessions.
    DialogAnswer inDialog = DialogAnswer::refusal;
    bool answersInProgress = false; // while a session is opened or saved, replies are unfinished and have an empty body
    Unfinished unfinished = Unfinished::inProgress;

    // ---- Faults.
    int busyOneIn = 0; // about one request in N begins a burst of refusals; 0 for none
    int busyBurst = 3; // the number of requests refused in a row
    BusyError busyError = BusyError::hostIsBusy;
    int stallOneIn = 0; // about one request in N is delayed by stallTime; 0 for none
    Duration stallTime = seconds(10);

    // ---- Faults of the wire. About one call in N has the fault; 0 for none.
    int resetOneIn = 0;             // its stream is reset
    int goAwayOneIn = 0;            // its connection ends with GOAWAY
    int dieOneIn = 0;               // all connections break, and the service comes back with no session identifiers
    Duration downTime = seconds(2); // until the service is back
    std::size_t bytesAtOnce = 0;    // bytes are sent in pieces of at most this size; 0 for no limit
    bool faultyWire = false;        // use a wire that can have these faults, even if none is chosen above
};

// A description of what is wrong with the options; absent when they are valid.
std::optional<std::string> problemWith(const ScriptingOptions& options);

// True when the options need a wire that can have faults.
bool needFaultyWire(const ScriptingOptions& options);

} // namespace lumbrine
