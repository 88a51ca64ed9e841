// The track list of the scripting service: which tracks are asked for, and how they are told.
#pragma once

#include "simulator/scripting_options.h"
#include "simulator/simulated_session.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine {

struct TrackListRequest {
    struct Filter {
        std::string
            name; // "All", "Selected", "Muted", "Soloed", "RecordEnabled", "InputMonitoring", "Hidden", "Inactive"
        bool inverted = false;

        bool operator==(const Filter&) const = default;
    };

    std::optional<std::size_t> limit; // absent and 0: as many as a page holds
    std::size_t offset = 0;
    std::vector<Filter> filters; // none lets all tracks pass
    bool additive = false;       // one filter that lets a track pass is enough

    bool operator==(const TrackListRequest&) const = default;
};

// From the command's body; absent when it is not of that form or has a filter that does not exist. "TLFilter_" in front
// of a filter's name makes no difference. The page is told by
// "pagination_request", or else by "page_limit".
std::optional<TrackListRequest> parseTrackListRequest(std::string_view body);

// A track as it was when the list was made.
struct ListedTrack {
    SimulatedTrack track;
    std::size_t index = 0; // in the session, from 1
    bool hiddenByFolder = false;
    std::string folderName;
};

struct TrackPage {
    std::size_t total = 0; // tracks that pass the filters
    std::size_t limit = 0;
    std::size_t offset = 0;
    std::vector<ListedTrack> tracks;
};

TrackPage pageOf(const SimulatedSession& session, const TrackListRequest& request, const ScriptingOptions& options);

// As of a session without tracks.
TrackPage emptyPage(const TrackListRequest& request, const ScriptingOptions& options);

// The body of the reply.
std::string trackListJSON(const TrackPage& page, const ScriptingOptions& options);

} // namespace lumbrine
