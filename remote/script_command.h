// The commands of scripts as text, such as "fader 3 0.72". `scriptCommandHelp` and docs/remote.md list all of them.
// Strips and session tracks are counted from 1.
#pragma once

#include "base/bytes.h"

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>

namespace lumbrine::remote {

// The datagram of one command, or a description of what is wrong with it. `token` is used in a hello.
std::expected<Bytes, std::string> scriptCommand(std::string_view text, std::optional<std::uint64_t> token);

// One line for each command.
std::string scriptCommandHelp();

} // namespace lumbrine::remote
