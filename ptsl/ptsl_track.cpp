#include "ptsl/ptsl_track.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <initializer_list>
#include <optional>
#include <string_view>

namespace lumbrine {

namespace {

// The number, if it has no fraction, also when it is written like 3.0. Beyond 2^53 a double may have lost its fraction,
// so it does not count.
std::optional<std::int64_t> wholeNumber(const JSONValue* value) {
    if (value == nullptr) return std::nullopt;
    if (const auto* const integer = value->as<std::int64_t>()) return *integer;
    const auto* const number = value->as<double>();
    if (number == nullptr || std::abs(*number) > 0x1p53 || std::trunc(*number) != *number) return std::nullopt;
    return static_cast<std::int64_t>(*number);
}

// True for a text that begins with one of the beginnings, and for one of the numbers, its fraction left out.
bool holds(const JSONValue* value, std::initializer_list<std::string_view> beginnings,
           std::initializer_list<double> numbers) {
    if (value == nullptr) return false;
    if (const auto* const text = value->as<std::string>())
        return std::ranges::any_of(beginnings,
                                   [&](std::string_view beginning) { return text->starts_with(beginning); });
    const auto isListed = [&](double number) { return std::ranges::find(numbers, number) != numbers.end(); };
    if (const auto* const integer = value->as<std::int64_t>()) return isListed(static_cast<double>(*integer));
    const auto* const number = value->as<double>();
    return number != nullptr && isListed(std::trunc(*number));
}

std::string textOf(const JSONValue* value) {
    const auto* const text = value == nullptr ? nullptr : value->as<std::string>();
    return text == nullptr ? std::string() : *text;
}

const JSONValue::Object* objectOf(const JSONValue* value) {
    return value == nullptr ? nullptr : value->as<JSONValue::Object>();
}

const JSONValue::Array* arrayOfObjects(const JSONValue* value) {
    const auto* const array = value == nullptr ? nullptr : value->as<JSONValue::Array>();
    if (array == nullptr) return nullptr;
    const auto isObject = [](const JSONValue& element) { return element.as<JSONValue::Object>() != nullptr; };
    return std::ranges::all_of(*array, isObject) ? array : nullptr;
}

// The service may write names in snake case or in camel case.
void readAttributes(const JSONValue::Object& attributes, PTSLTrack& track) {
    const auto either = [&](std::string_view snakeCase, std::string_view camelCase) {
        const JSONValue* const value = attributes.find(snakeCase);
        return value != nullptr ? value : attributes.find(camelCase);
    };
    track.isSelected = attributeIsSet(either("is_selected", "isSelected"));
    track.isInputMonitoringOn = attributeIsExplicitlySet(either("is_input_monitoring_on", "isInputMonitoringOn"));
    track.isHidden = attributeIsSet(either("is_hidden", "isHidden"));
    track.isInactive = attributeIsSet(either("is_inactive", "isInactive"));
    track.isMuted = boolValue(either("is_muted", "isMuted"));
    track.isSoloed = boolValue(either("is_soloed", "isSoloed"));
    track.isRecordEnabled = boolValue(either("is_record_enabled", "isRecordEnabled"));
}

} // namespace

bool attributeIsSet(const JSONValue* value) {
    return holds(value, {"SetExplicitly", "SetImplicitly", "TAState_SetExplicitly", "TAState_SetImplicitly"},
                 {2, 3, 4});
}

bool attributeIsExplicitlySet(const JSONValue* value) {
    return holds(value, {"SetExplicitly", "TAState_SetExplicitly"}, {2, 4});
}

bool boolValue(const JSONValue* value) {
    if (value == nullptr) return false;
    if (const auto* const flag = value->as<bool>()) return *flag;
    if (const auto* const integer = value->as<std::int64_t>()) return *integer != 0;
    const auto* const number = value->as<double>();
    return number != nullptr && *number != 0;
}

std::optional<RGBColor> parseColor(std::string_view text) {
    if (text.starts_with('#')) text.remove_prefix(1);
    if (text.size() != 8 && text.size() != 6) return std::nullopt;
    std::uint32_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return value;
}

PTSLTrack trackFrom(const JSONValue::Object& object, std::int64_t position) {
    PTSLTrack track;
    track.index = wholeNumber(object.find("index")).value_or(position + 1);
    track.id = textOf(object.find("id"));
    track.name = textOf(object.find("name"));
    track.color = parseColor(textOf(object.find("color")));
    const auto* attributes = objectOf(object.find("track_attributes"));
    if (attributes == nullptr) attributes = objectOf(object.find("trackAttributes"));
    if (attributes != nullptr) readAttributes(*attributes, track);
    return track;
}

std::vector<PTSLTrack> tracksFrom(const JSONValue::Object& reply) {
    const auto* list = arrayOfObjects(reply.find("track_list"));
    if (list == nullptr) list = arrayOfObjects(reply.find("trackList"));
    std::vector<PTSLTrack> tracks;
    if (list == nullptr) return tracks;
    tracks.reserve(list->size());
    for (const JSONValue& element : *list)
        tracks.push_back(trackFrom(*element.as<JSONValue::Object>(), static_cast<std::int64_t>(tracks.size())));
    return tracks;
}

} // namespace lumbrine
