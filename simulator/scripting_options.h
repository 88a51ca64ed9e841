// What can be chosen about the scripting service of the simulated Pro Tools: spellings that versions of the real one
// differ in, and faults.
#pragma once

#include "platform/api/time.h"

#include <cstddef>
#include <optional>
#include <string>

namespace lumbrine {

// How the four values of an attribute are written that can be set in two ways.
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

// What a service says to a session identifier that it does not know.
enum class UnknownSessionError { unknownError = 100, invalidParameter = 126, forbidden = 127, sessionID = 403 };

// What becomes of commands while the program shows a dialog.
enum class DialogAnswer {
    refusal,  // all of them fail with 106, although a session is open
    deferral, // they fail with 106, and are carried out all the same once the dialog is closed
    silence,  // they are served once the dialog is closed
};

// What a service says that cannot serve at the moment.
enum class BusyError { hostNotReady = 134, commandTimedOut = 137, hostIsBusy = 138 };

struct ScriptingOptions {
    // ---- What replies look like.
    AttributeSpelling attributes = AttributeSpelling::names;
    ErrorTypeSpelling errorTypes = ErrorTypeSpelling::number;
    bool camelCase = false;         // of the keys, as older versions have it
    bool emptyListAsObject = false; // {} in the place of []
    bool statsForPages = false;     // "stats" in the place of "pagination_response", as older versions have it
    int version = 5;                // 1 to 5; a request of a later one is refused
    UnknownSessionError unknownSession = UnknownSessionError::sessionID;
    bool readyCheckFails = false;           // a host that is not ready says so by a failure
    bool closedSessionListsNothing = false; // without a session the track list is empty, and no failure
    bool armedMonitors = false;             // a track that is armed for recording has its input monitored implicitly
    std::size_t pageLimit = 1000;           // tracks in one reply at most
    int miscount = 0;                       // the track list has so many tracks too many, or too few below 0

    // ---- How it lives.
    bool registrationOutlivesConnection = false;
    Duration commandTime = Duration::zero(); // from a request to the work on it
    Duration readyAfter = Duration::zero();  // from the start until the host is ready

    // ---- Dialogs, and sessions that are opened or saved.
    DialogAnswer inDialog = DialogAnswer::refusal;
    bool answersInProgress = false; // while a session is opened or saved, replies have status 2 and an empty body

    // ---- Faults.
    int busyOneIn = 0; // about one request in so many begins a burst of refusals; 0 for none
    int busyBurst = 3; // requests that are refused in a row
    BusyError busyError = BusyError::hostIsBusy;
    int stallOneIn = 0; // about one request in so many is served late; 0 for none
    Duration stallTime = seconds(10);

    // ---- Faults of the wire. About one call in so many ends in it, none with 0.
    int resetOneIn = 0;             // its stream is reset
    int goAwayOneIn = 0;            // its connection ends with GOAWAY
    int dieOneIn = 0;               // all connections break, and the service comes back without knowing any session
    Duration downTime = seconds(2); // until it is back
    std::size_t bytesAtOnce = 0;    // bytes go out in pieces of this size; 0 for as they come
    bool faultyWire = false;        // on a network, the wire is one that can have these faults
};

// What is wrong with the options, in words, or nothing.
std::optional<std::string> problemWith(const ScriptingOptions& options);

// Whether they need a wire that can have faults.
bool needFaultyWire(const ScriptingOptions& options);

} // namespace lumbrine
