// Interprets the texts in which Linux describes the user and the computer. Pure functions: they read no file and no
// environment.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine {

using EnvironmentLookup = std::function<std::optional<std::string>(const std::string& name)>;

// The user's languages, most preferred first. They come from the first variable of LANGUAGE (a list separated by
// colons), LC_ALL, LC_MESSAGES and LANG that is not empty. Empty when all of them are.
std::vector<std::string> languagesOf(const EnvironmentLookup& environment);

// The value of PRETTY_HOSTNAME in the text of /etc/machine-info, unquoted by the rules of a shell. When it occurs more
// than once, the last one counts. Absent when it is missing, empty or badly quoted.
std::optional<std::string> prettyHostName(std::string_view machineInfo);

} // namespace lumbrine
