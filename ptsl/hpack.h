// HPACK (RFC 7541) for one fixed list of request headers: only the static table and plain text. No dynamic table, no
// Huffman code, no decoding.
#pragma once

#include "base/bytes.h"

#include <string_view>

namespace lumbrine {

// A string literal (RFC 7541, section 5.2): the length as an integer with a 7-bit prefix, then the bytes.
Bytes hpackString(std::string_view text);

// The headers of a gRPC request: method POST, scheme http, path, authority, content-type application/grpc, te trailers.
Bytes headerBlock(std::string_view path, std::string_view authority);

} // namespace lumbrine
