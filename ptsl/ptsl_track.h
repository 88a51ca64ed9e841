// A track as the scripting service tells it.
#pragma once

#include "base/json_value.h"

#include <cstdint>
#include <string>
#include <vector>

namespace lumbrine {

struct PTSLTrack {
    std::int64_t index = 0; // from 1
    std::string name = {};
    std::string colorHex = {}; // "#ff336699", as it came
    bool isSelected = false;
    bool isInputMonitoringOn = false; // on the track itself; what is merely implied does not count
    bool isHidden = false;
    bool isInactive = false;
    bool isMuted = false;
    bool isSoloed = false;
    bool isRecordEnabled = false;

    bool operator==(const PTSLTrack&) const = default;
};

// One entry of the list; `position` counts from 0 and stands in for an index that is no whole number.
PTSLTrack trackFrom(const JSONValue::Object& track, std::int64_t position);

// The tracks of a reply, in order; none when it has no list of objects.
std::vector<PTSLTrack> tracksFrom(const JSONValue::Object& reply);

// How the service's attributes are read; null is an attribute that is not there. States of four values come as names
// or as the numbers 1 (none) to 4 (both), of which a fraction is cut off.
bool attributeIsSet(const JSONValue* value);           // in whichever way
bool attributeIsExplicitlySet(const JSONValue* value); // on the track itself
bool boolValue(const JSONValue* value);                // a boolean, or a number other than 0

} // namespace lumbrine
