#include "simulator/scripting_track_list.h"

#include "simulator/scripting_json.h"

#include <algorithm>
#include <array>
#include <utility>

namespace lumbrine {

namespace {

using Filter = TrackListRequest::Filter;

struct NamedFilter {
    std::string_view name;
    bool (*passes)(const ListedTrack& listed);
};

constexpr std::array namedFilters{
    NamedFilter{"All", [](const ListedTrack&) { return true; }},
    NamedFilter{"Selected", [](const ListedTrack& listed) { return listed.track.selected; }},
    NamedFilter{"Muted", [](const ListedTrack& listed) { return listed.track.mute; }},
    NamedFilter{"Soloed", [](const ListedTrack& listed) { return listed.track.solo; }},
    NamedFilter{"RecordEnabled", [](const ListedTrack& listed) { return listed.track.recordArmed; }},
    NamedFilter{"InputMonitoring", [](const ListedTrack& listed) { return listed.track.inputMonitor; }},
    NamedFilter{"Hidden", [](const ListedTrack& listed) { return listed.track.hidden || listed.hiddenByFolder; }},
    NamedFilter{"Inactive", [](const ListedTrack& listed) { return listed.track.inactive; }},
};

// "TLFilter_All" means the same as "All".
const NamedFilter* filterNamed(std::string_view name) {
    constexpr std::string_view prefix = "TLFilter_";
    if (name.starts_with(prefix)) name.remove_prefix(prefix.size());
    const auto* const found = std::ranges::find(namedFilters, name, &NamedFilter::name);
    return found == namedFilters.end() ? nullptr : found;
}

// Returns false when the value has another type. When it is missing, returns true and leaves `value` unchanged.
bool readFlag(const ScriptingJSON& object, std::string_view key, bool& value) {
    const ScriptingJSON* const found = valueOf(object, key);
    if (found == nullptr) return true;
    if (!found->is_boolean()) return false;
    value = found->get<bool>();
    return true;
}

bool readCount(const ScriptingJSON& object, std::string_view key, std::optional<std::size_t>& value) {
    const ScriptingJSON* const found = valueOf(object, key);
    if (found == nullptr) return true;
    if (!found->is_number_unsigned()) return false;
    value = found->get<std::size_t>();
    return true;
}

bool readPage(const ScriptingJSON& body, TrackListRequest& request) {
    const ScriptingJSON* const pagination = valueOf(body, "pagination_request");
    if (pagination == nullptr) return readCount(body, "page_limit", request.limit);
    std::optional<std::size_t> offset;
    if (!pagination->is_object() || !readCount(*pagination, "limit", request.limit) ||
        !readCount(*pagination, "offset", offset))
        return false;
    request.offset = offset.value_or(0);
    return true;
}

bool readFilters(const ScriptingJSON& body, std::vector<Filter>& filters) {
    const ScriptingJSON* const list = valueOf(body, "track_filter_list");
    if (list == nullptr) return true;
    if (!list->is_array()) return false;
    for (const ScriptingJSON& item : *list) {
        const ScriptingJSON* const name = item.is_object() ? valueOf(item, "filter") : nullptr;
        if (name == nullptr || !name->is_string()) return false;
        Filter filter{name->get<std::string>()};
        if (filterNamed(filter.name) == nullptr || !readFlag(item, "is_inverted", filter.inverted)) return false;
        filters.push_back(std::move(filter));
    }
    return true;
}

bool passes(const ListedTrack& listed, const TrackListRequest& request) {
    const auto lets = [&](const Filter& filter) { return filterNamed(filter.name)->passes(listed) != filter.inverted; };
    if (request.filters.empty()) return true;
    return request.additive ? std::ranges::any_of(request.filters, lets) : std::ranges::all_of(request.filters, lets);
}

// Adds tracks that the session does not have at the end, or removes tracks from the end.
void miscount(std::vector<ListedTrack>& listed, int tooMany, std::size_t sessionSize) {
    if (tooMany < 0) listed.resize(listed.size() - std::min(listed.size(), static_cast<std::size_t>(-tooMany)));
    for (int i = 1; i <= tooMany; ++i) {
        ListedTrack extra;
        extra.track.name = "Ghost " + std::to_string(i);
        extra.index = sessionSize + static_cast<std::size_t>(i);
        listed.push_back(std::move(extra));
    }
}

constexpr std::array<const char*, 7> typeNames{"Audio", "Instrument", "Midi", "Aux", "Master", "Vca", "Video"};

ScriptingJSON attributeValue(bool explicitly, bool implicitly, AttributeSpelling spelling) {
    constexpr std::array<std::string_view, 4> names{"None", "SetExplicitly", "SetImplicitly",
                                                    "SetExplicitlyAndImplicitly"};
    const auto value = static_cast<std::size_t>(explicitly) + 2 * static_cast<std::size_t>(implicitly);
    switch (spelling) {
    case AttributeSpelling::names:
        return names[value];
    case AttributeSpelling::prefixedNames:
        return "TAState_" + std::string(names[value]);
    case AttributeSpelling::numbers:
        return value + 1;
    }
    return {};
}

ScriptingJSON attributesOf(const ListedTrack& listed, const ScriptingOptions& options) {
    ScriptingJSON attributes = ScriptingJSON::object();
    const auto set = [&](std::string_view key, ScriptingJSON value) {
        attributes[spelledKey(key, options.camelCase)] = std::move(value);
    };
    const SimulatedTrack& track = listed.track;
    const auto value = [&](bool explicitly, bool implicitly) {
        return attributeValue(explicitly, implicitly, options.attributes);
    };
    set("is_inactive", value(track.inactive, false));
    set("is_hidden", value(track.hidden, listed.hiddenByFolder));
    set("is_selected", value(track.selected, false));
    set("is_input_monitoring_on", value(track.inputMonitor, options.armedMonitors && track.recordArmed));
    set("is_soloed", track.solo);
    set("is_record_enabled", track.recordArmed);
    set("is_muted", track.mute);
    set("is_open", track.isFolder && !track.closed);
    return attributes;
}

ScriptingJSON trackJSON(const ListedTrack& listed, const ScriptingOptions& options) {
    const SimulatedTrack& track = listed.track;
    ScriptingJSON json = ScriptingJSON::object();
    json["name"] = track.name;
    json["type"] = track.isFolder ? "RoutingFolder" : typeNames[static_cast<std::size_t>(track.type)];
    json["id"] = "track-" + std::to_string(track.id);
    json["index"] = listed.index;
    json["color"] = track.color;
    json[spelledKey("track_attributes", options.camelCase)] = attributesOf(listed, options);
    json["format"] = track.stereo ? "Stereo" : "Mono";
    json[spelledKey("parent_folder_name", options.camelCase)] = listed.folderName;
    return json;
}

} // namespace

std::optional<TrackListRequest> parseTrackListRequest(std::string_view text) {
    const std::optional<ScriptingJSON> body = objectOf(text);
    TrackListRequest request;
    if (!body || !readPage(*body, request) || !readFilters(*body, request.filters) ||
        !readFlag(*body, "is_filter_list_additive", request.additive))
        return std::nullopt;
    return request;
}

TrackPage pageOf(const SimulatedSession& session, const TrackListRequest& request, const ScriptingOptions& options) {
    std::vector<ListedTrack> listed;
    for (const SimulatedTrack& track : session.tracks()) {
        const SimulatedTrack* const folder = session.find(track.folder);
        listed.push_back({track, static_cast<std::size_t>(&track - session.tracks().data()) + 1,
                          session.hiddenByFolder(track), folder == nullptr ? "" : folder->name});
        if (!passes(listed.back(), request)) listed.pop_back();
    }
    miscount(listed, options.miscount, session.tracks().size());

    TrackPage page;
    page.total = listed.size();
    page.limit = std::min(request.limit.value_or(0) == 0 ? options.pageLimit : *request.limit, options.pageLimit);
    page.offset = request.offset;
    const std::size_t first = std::min(page.offset, listed.size());
    const std::size_t count = std::min(page.limit, listed.size() - first);
    page.tracks.reserve(count);
    for (std::size_t i = first; i < first + count; ++i)
        page.tracks.push_back(std::move(listed[i]));
    return page;
}

TrackPage emptyPage(const TrackListRequest& request, const ScriptingOptions& options) {
    return pageOf(SimulatedSession(), request, options);
}

std::string trackListJSON(const TrackPage& page, const ScriptingOptions& options) {
    ScriptingJSON list =
        page.tracks.empty() && options.emptyListAsObject ? ScriptingJSON::object() : ScriptingJSON::array();
    for (const ListedTrack& listed : page.tracks)
        list.push_back(trackJSON(listed, options));
    ScriptingJSON body = ScriptingJSON::object();
    body[spelledKey("track_list", options.camelCase)] = std::move(list);
    ScriptingJSON& pagination =
        body[spelledKey(options.statsForPages ? "stats" : "pagination_response", options.camelCase)];
    pagination["total"] = page.total;
    pagination["limit"] = page.limit;
    pagination["offset"] = page.offset;
    return textOf(body);
}

} // namespace lumbrine
