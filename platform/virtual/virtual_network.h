// A network in virtual time: hosts with addresses, datagrams that take time, get lost, doubled or overtaken.
#pragma once

#include "platform/api/datagram_sockets.h"
#include "platform/virtual/virtual_runtime.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>

namespace lumbrine {

// A socket keeps 4096 datagrams that nobody has received yet; further ones are lost. Every machine reaches itself
// under "127.0.0.1" and "::1" too. Used by threads of the runtime only, which take turns; destroyed when none is in a
// call.
class VirtualNetwork {
public:
    struct Faults {
        double loss = 0;        // probability that a datagram vanishes
        double duplication = 0; // probability that it arrives twice
        Duration latency = Duration::zero();
        Duration jitter = Duration::zero(); // up to this much more, for each datagram by itself: later ones overtake
        double straying = 0;                // probability that a datagram is held up somewhere
        Duration detour = Duration::zero(); // for up to this long, on top of all else
    };

    explicit VirtualNetwork(VirtualRuntime& rt);
    ~VirtualNetwork();

    // How datagrams fare that are sent from now on.
    void setFaults(Faults newFaults);

    // The sockets of the machine with that address ("192.168.1.7"); its addresses are told in IPv4-mapped form
    // ("::ffff:192.168.1.7"), as a dual-stack socket tells them. Machines are made by being asked for.
    DatagramSockets& host(const std::string& address);

    // Makes the calls of that kind on that host return -error (an errno value) from the next one on; 0 heals it. A
    // receive that already waits goes on waiting.
    enum class Call { open, bind, receive, send };
    void fail(const std::string& address, Call call, int error);

    // While a machine is cut off, all that is sent to it or by it is lost, and nobody's call fails.
    void cutOff(const std::string& address, bool isCutOff);

    // The machine has another address from now on, with the same sockets and ports; the old one is nobody's. No machine
    // has the new one yet.
    void move(const std::string& address, const std::string& newAddress);

    // A datagram whose sender is made up. It fares as every other.
    void forge(const std::string& fromHost, std::uint16_t fromPort, const std::string& toHost, std::uint16_t toPort,
               ByteView bytes);

    // Everything that has not arrived yet is lost.
    void loseWhatIsUnderWay();

private:
    class Host;

    void carry(const PeerAddress& from, Host& receiver, std::uint16_t toPort, ByteView bytes);
    Host* find(const std::string& address);

    VirtualRuntime& runtime;
    Faults faults;
    int lastDescriptor = 999;
    std::map<std::string, std::unique_ptr<Host>> hosts;
};

} // namespace lumbrine
