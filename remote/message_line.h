// A message of the receiver's as one line of text: what the script language expects and what watching prints.
//
// A line is words with one blank between them, the first of which names the kind of message. Strips and session tracks
// are counted from 1, as people count them. Faders are told from 0 to 1 with four decimals, ring positions from 0
// (dark) to 11. Messages about several strips or tracks give each a word of its own, "3=M--" (docs/remote.md).
#pragma once

#include "remote/receiver_message.h"
#include "remote/remote_client.h"

#include <string>
#include <string_view>

namespace lumbrine::remote {

// Printable whatever the message holds, and without a line end.
std::string lineOf(const ReceiverMessage& message);

std::string lineOf(LinkState state); // "state connected"

std::string_view nameOf(LinkState state);     // "connected", "taken-over"
std::string_view autoModeName(AutoMode mode); // "read", "trim+touch"; "unknown" for any other code

} // namespace lumbrine::remote
