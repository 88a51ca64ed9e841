// Messages of the receiver as lines of text. Scripts match these lines, and --watch prints them.
//
// A line is words separated by one blank; the first word names the kind of message. Strips and session tracks are
// counted from 1. Fader values are 0 to 1 with four decimals, ring positions 0 (dark) to 11. A message about several
// strips or tracks has one word for each: "3=M--" (docs/remote.md).
#pragma once

#include "remote/receiver_message.h"
#include "remote/remote_client.h"

#include <string>
#include <string_view>

namespace lumbrine::remote {

// Always printable, whatever the message holds, and without a line end.
std::string lineOf(const ReceiverMessage& message);

std::string lineOf(LinkState state); // "state connected"

std::string_view nameOf(LinkState state);     // "connected", "taken-over"
std::string_view autoModeName(AutoMode mode); // "read", "trim+touch"; "unknown" for any other code

} // namespace lumbrine::remote
