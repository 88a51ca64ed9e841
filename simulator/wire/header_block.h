// Header blocks in the part of HPACK (RFC 7541) that a small client and a small service need.
#pragma once

#include "base/bytes.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lumbrine::wire {

struct Header {
    std::string name;
    std::string value;

    bool operator==(const Header&) const = default;
};

// In the order in which they stand. Absent when the block is malformed, is Huffman-coded, or refers to the dynamic
// table or to an entry of the static one that no request to this service has.
std::optional<std::vector<Header>> decodeHeaders(ByteView block);

// The first block of a response: status 200 and the content type of gRPC.
Bytes responseHeaders();

// The last block of a response; the message is left out when it is empty.
Bytes trailers(int grpcStatus, std::string_view message);

} // namespace lumbrine::wire
