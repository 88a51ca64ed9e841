// The track list of the scripting service: the request, the selection of tracks, and the JSON of the reply.
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

    std::optional<std::size_t> limit; // absent or 0 means the limit of a page
    std::size_t offset = 0;
    std::vector<Filter> filters; // without filters all tracks pass
    bool additive = false;       // true: a track passes when one filter lets it; false: when all do

    bool operator==(const TrackListRequest&) const = default;
};

// Parses the body of the command. Absent when the form is wrong or a filter does not exist. A filter's name may begin
// with "TLFilter_". The page comes from "pagination_request", or from "page_limit" if that is missing.
std::optional<TrackListRequest> parseTrackListRequest(std::string_view body);

// A copy of a track at the time of the list.
struct ListedTrack {
    SimulatedTrack track;
    std::size_t index = 0; // position in the session, from 1
    bool hiddenByFolder = false;
    std::string folderName;
};

struct TrackPage {
    std::size_t total = 0; // the number of tracks that pass the filters
    std::size_t limit = 0;
    std::size_t offset = 0;
    std::vector<ListedTrack> tracks;
};

TrackPage pageOf(const SimulatedSession& session, const TrackListRequest& request, const ScriptingOptions& options);

// The page of a session without tracks.
TrackPage emptyPage(const TrackListRequest& request, const ScriptingOptions& options);

// The body of the reply.
std::string trackListJSON(const TrackPage& page, const ScriptingOptions& options);

} // namespace lumbrine
