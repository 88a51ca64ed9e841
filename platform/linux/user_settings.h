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

// The receiver's own folder for the state of its runs. The service manager names it in STATE_DIRECTORY for a service;
// otherwise it is in XDG_STATE_HOME or ~/.local/state. Absent when no folder is known.
std::optional<std::string> stateFolderIn(const EnvironmentLookup& environment);

} // namespace lumbrine
