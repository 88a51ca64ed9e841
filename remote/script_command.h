// The commands that a script may send, as text: "fader 3 0.72". The whole language is listed by `scriptCommandHelp` and
// in docs/remote.md. Strips and session tracks are counted from 1.
#pragma once

#include "base/bytes.h"

#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>

namespace lumbrine::remote {

// The datagram of one command, or what is wrong with it. `token` goes into a hello.
std::expected<Bytes, std::string> scriptCommand(std::string_view text, std::optional<std::uint64_t> token);

// One line for each command.
std::string scriptCommandHelp();

} // namespace lumbrine::remote
