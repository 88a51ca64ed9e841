// Datagrams as words: those of a client as lumbrine-remote takes them, those of the receiver as it prints them.
#pragma once

#include "base/bytes.h"

#include <optional>
#include <string>

namespace lumbrine::blackbox {

struct DatagramWords {
    std::string text;              // one line
    std::optional<int> strip = {}; // of a message about one strip, from 0
};

DatagramWords clientWords(ByteView datagram);
DatagramWords receiverWords(ByteView datagram);

// "01 1f 00 03"
std::string hexOf(ByteView bytes);

} // namespace lumbrine::blackbox
