// JSON as the scripting service reads and writes it.
#pragma once

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <string_view>

namespace lumbrine {

using ScriptingJSON = nlohmann::ordered_json; // keys stay in the order in which they were set

// An object out of a command's body; an empty body is an empty object. Absent when the text is anything else.
std::optional<ScriptingJSON> objectOf(std::string_view body);

// Without blanks. Bytes that are no UTF-8 are repaired.
std::string textOf(const ScriptingJSON& json);

// The value under a key; null when the key is absent.
const ScriptingJSON* valueOf(const ScriptingJSON& object, std::string_view key);

// "is_input_monitoring_on", or "isInputMonitoringOn".
std::string spelledKey(std::string_view snakeCase, bool camelCase);

} // namespace lumbrine
