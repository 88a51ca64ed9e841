// Reading what a Linux system says about its user and itself, from texts: no files, no environment, no state.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine {

using EnvironmentLookup = std::function<std::optional<std::string>(const std::string& name)>;

// The languages that the environment asks for, most preferred first: from the first of LANGUAGE (a list with colons),
// LC_ALL, LC_MESSAGES and LANG that is set and names one. Empty when none does.
std::vector<std::string> languagesOf(const EnvironmentLookup& environment);

// PRETTY_HOSTNAME of the text of /etc/machine-info, unquoted as a shell would; the last one counts. Absent when it is
// not there, empty or badly quoted.
std::optional<std::string> prettyHostName(std::string_view machineInfo);

} // namespace lumbrine
