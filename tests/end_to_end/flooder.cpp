#include "tests/end_to_end/flooder.h"

#include "tests/end_to_end/client_socket.h"

#include <algorithm>

namespace lumbrine::end_to_end {

namespace {

constexpr int datagramsOfAPort = 100;
constexpr std::size_t longest = 3000;

// A socket's buffer holds about fifty datagrams of that length.
constexpr int underWay = 16;

constexpr std::uint8_t version = 0x01;
constexpr std::uint8_t takeOver = 0x25;

const Bytes busy{0x01, 0x7D};

} // namespace

Bytes RandomDatagrams::next() {
    const bool isShort = random() % 2 == 0;
    Bytes bytes(random() % (isShort ? 40 : longest + 1));
    for (std::size_t i = 0; i < bytes.size(); i += 4) {
        const auto four = static_cast<std::uint32_t>(random());
        for (std::size_t j = i; j < std::min(i + 4, bytes.size()); ++j)
            bytes[j] = static_cast<std::uint8_t>(four >> (8 * (j - i)));
    }
    if (bytes.size() < 2) return bytes;
    if (random() % 2 == 0) {
        bytes[0] = version;
        bytes[1] %= takeOver + 2;
    }
    if (bytes[0] == version && bytes[1] == takeOver) bytes[1] = 0;
    return bytes;
}

Flooder::Flooder(std::uint16_t port, Pace pace, std::uint32_t seed)
    : port(port), pace(pace), datagrams(seed), thread([this] { run(); }) {}

Flooder::~Flooder() {
    stopping = true;
    thread.join();
}

void Flooder::run() {
    while (!stopping)
        floodFromOnePort();
}

void Flooder::floodFromOnePort() {
    ClientSocket socket(port);
    int open = 0;
    const auto takeAnswer = [&] {
        if (socket.hears(busy)) {
            --open;
        } else {
            unansweredCount += static_cast<std::uint64_t>(open);
            open = 0;
        }
    };
    for (int i = 0; i < datagramsOfAPort && !stopping; ++i) {
        const Bytes datagram = datagrams.next();
        socket.send(datagram);
        ++sentCount;
        if (pace == Pace::unlimited) continue;
        if (!datagram.empty()) ++open;
        while (open >= underWay)
            takeAnswer();
    }
    while (open > 0)
        takeAnswer();
}

} // namespace lumbrine::end_to_end
