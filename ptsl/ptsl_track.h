// A track as the scripting service reports it.
#pragma once

#include "base/json_value.h"
#include "base/rgb_color.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine {

struct PTSLTrack {
    std::int64_t index = 0; // from 1
    std::string name = {};
    std::optional<RGBColor> color = {};
    bool isSelected = false;          // not used by the receiver
    bool isInputMonitoringOn = false; // only when set on the track itself, not when implied by another setting
    bool isHidden = false;
    bool isInactive = false; // not used by the receiver
    bool isMuted = false;
    bool isSoloed = false;
    bool isRecordEnabled = false;
    std::string id = {}; // stays the same when the name changes; empty in versions without ids

    bool operator==(const PTSLTrack&) const = default;
};

// Reads one entry of the list. When its index is not a whole number, the index is `position` + 1; `position` counts
// from 0.
PTSLTrack trackFrom(const JSONValue::Object& track, std::int64_t position);

// Reads the tracks of a reply, in order. Empty when the reply has no list of objects.
std::vector<PTSLTrack> tracksFrom(const JSONValue::Object& reply);

// Reads "#AARRGGBB" or "#RRGGBB", with or without "#", and drops the alpha. Empty for any other text.
std::optional<RGBColor> parseColor(std::string_view text);

// Read the attributes of a track; null stands for a missing attribute. A state with four values is a name or a number:
// 1 not set, 2 set on the track, 3 implied by another setting, 4 both. A fraction of the number is cut off.
bool attributeIsSet(const JSONValue* value);           // on the track or implied
bool attributeIsExplicitlySet(const JSONValue* value); // on the track
bool boolValue(const JSONValue* value);                // a boolean, or a number other than 0

} // namespace lumbrine
