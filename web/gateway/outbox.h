// The messages that wait for a browser which reads more slowly than the receiver sends.
#pragma once

#include "base/bytes.h"

#include <cstddef>
#include <deque>

namespace lumbrine::web {

// First in, first out. A message that another one of the same kind makes obsolete gives its place up: meters, and the
// faders of each strip. All others keep their places.
class Outbox {
public:
    static constexpr std::size_t mostMessages = 4'096;
    static constexpr std::size_t mostBytes = 262'144; // 256 KiB

    // Copies the message. False when there is no room for it, and then nothing has changed.
    bool put(ByteView message);

    bool empty() const { return messages.empty(); }

    // Removes the oldest message. There must be one.
    Bytes take();

    std::size_t size() const { return messages.size(); }

private:
    std::deque<Bytes> messages;
    std::size_t bytes = 0; // in all of them
};

} // namespace lumbrine::web
