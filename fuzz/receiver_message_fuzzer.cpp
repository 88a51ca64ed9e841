// The input is one datagram to a client: parsed, applied to the session picture, and printed as a line.
#include "fuzz/require.h"
#include "remote/message_line.h"
#include "remote/session_picture.h"
#include "remote/terminal_text.h"

#include <algorithm>

using namespace lumbrine;
using namespace lumbrine::remote;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto message = parseReceiverMessage(ByteView(data, size));
    if (!message) return 0;
    SessionPicture picture;
    picture.apply(*message);
    const SessionPicture painted = picture;
    require(!picture.apply(*message)); // a datagram that arrives twice changes nothing the second time
    require(picture == painted);
    const std::string line = lineOf(*message);
    require(std::ranges::none_of(line, [](unsigned char byte) { return byte < ' ' || byte == 0x7F; }));
    require(printable(line) == line);
    return 0;
}
