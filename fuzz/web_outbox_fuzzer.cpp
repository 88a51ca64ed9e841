// The input is a list of steps of a byte. With the high bit, a message is taken; without it one is put in, and the
// other bits choose its type and strip. What comes out is what went in, in its order, without what was made obsolete.
#include "fuzz/require.h"
#include "web/gateway/outbox.h"

#include <vector>

namespace {

using namespace lumbrine;

constexpr std::size_t largeMessage = 20'000;

struct Waiting {
    int subject; // of those with the same one only the newest waits; below 0: none has it
    Bytes message;
};

// Bits 0-1: 0 meters, 1 a fader of the strip in bits 2-3, 2 a name, 3 a large message.
Waiting messageOf(std::uint8_t step, std::uint8_t number) {
    const auto strip = static_cast<std::uint8_t>(step >> 2 & 3);
    switch (step & 3) {
    case 0:
        return {0, {0x01, 0x11, number}};
    case 1:
        return {1 + strip, {0x01, 0x12, strip, number, number}};
    case 2:
        return {-1, {0x01, 0x10, strip, number}};
    default:
        return {-1, Bytes(largeMessage, number)};
    }
}

std::size_t bytesIn(const std::vector<Waiting>& waiting) {
    std::size_t bytes = 0;
    for (const Waiting& one : waiting)
        bytes += one.message.size();
    return bytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    web::Outbox outbox;
    std::vector<Waiting> expected;
    for (std::size_t i = 0; i < size; ++i) {
        if ((data[i] & 0x80) != 0) {
            require(outbox.empty() == expected.empty());
            if (expected.empty()) continue;
            require(outbox.take() == expected.front().message);
            expected.erase(expected.begin());
            continue;
        }
        const Waiting fresh = messageOf(data[i], static_cast<std::uint8_t>(i));
        std::vector<Waiting> next = expected;
        std::erase_if(next, [&](const Waiting& old) { return old.subject >= 0 && old.subject == fresh.subject; });
        next.push_back(fresh);
        const bool fits = next.size() <= web::Outbox::mostMessages && bytesIn(next) <= web::Outbox::mostBytes;
        require(outbox.put(fresh.message) == fits);
        if (fits) expected = std::move(next);
        require(outbox.size() == expected.size());
    }
    return 0;
}
