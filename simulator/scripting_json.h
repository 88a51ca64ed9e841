// JSON in the form that the scripting service reads and writes.
#pragma once

#include <nlohmann/json.hpp>

#include <optional>
#include <string>
#include <string_view>

namespace lumbrine {

using ScriptingJSON = nlohmann::ordered_json; // keys keep their order

// Parses the body of a command. An empty body is an empty object. Absent when the text is not a JSON object.
std::optional<ScriptingJSON> objectOf(std::string_view body);

// Writes JSON without blanks. Bytes that are not UTF-8 are replaced.
std::string textOf(const ScriptingJSON& json);

// The value under a key; null when the key is absent.
const ScriptingJSON* valueOf(const ScriptingJSON& object, std::string_view key);

// "is_input_monitoring_on", or "isInputMonitoringOn".
std::string spelledKey(std::string_view snakeCase, bool camelCase);

} // namespace lumbrine
