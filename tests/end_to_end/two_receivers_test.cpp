// Two receivers on one network, and somebody who makes each believe that the other one talks to it.
#include "tests/end_to_end/neighbours.h"
#include "tests/end_to_end/receiver_process.h"
#include "tests/interop/own_world.h"
#include "tests/interop/waiting.h"

#include <fstream>
#include <sstream>

namespace lumbrine::end_to_end {
namespace {

using interop::holdsFor;
using interop::waitUntil;

// How many datagrams the sockets of this network have received.
long receivedDatagrams() {
    long count = 0;
    std::ifstream counters("/proc/net/snmp");
    for (std::string line; std::getline(counters, line);) {
        std::istringstream fields(line);
        std::string name;
        if (fields >> name && name == "Udp:" && fields >> count) return count; // the line of names has no number there
    }
    return count;
}

TEST(TwoReceivers, DoNotAnswerEachOther) {
    if (!interop::inOwnWorld()) GTEST_SKIP() << "needs a network of its own";
    const ReceiverProcess one({.jack = noJack}), other({.jack = noJack});
    const UDPPlace here = onThisComputer(one.port), there = onThisComputer(other.port);
    ForgedDatagrams forged;

    const long before = receivedDatagrams();
    for (const UDPPlace receiver : {here, there}) // an owner for each, so that others are refused
        forged.send(onThisComputer(9), receiver, Bytes{0x01});
    for (const Bytes& datagram : {Bytes{0x01, 0x7D}, Bytes{0x01, 0x7F}, Bytes{0x01, 0x1D, 0x00, 0x00}, Bytes{0x01}}) {
        forged.send(here, there, datagram);
        forged.send(there, here, datagram);
    }
    // Ten were forged, and each receiver has refused the last one. A conversation would go on and on.
    EXPECT_TRUE(waitUntil([&] { return receivedDatagrams() - before >= 12; }));
    EXPECT_TRUE(holdsFor(std::chrono::milliseconds(500), [&] { return receivedDatagrams() - before == 12; }));
}

} // namespace
} // namespace lumbrine::end_to_end
