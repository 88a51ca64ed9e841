// A UDP network in virtual time: hosts with addresses, and datagrams that take time, get lost, doubled or reordered.
#pragma once

#include "platform/api/datagram_sockets.h"
#include "platform/virtual/virtual_runtime.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>

namespace lumbrine {

struct VirtualAddress;

// A socket queues up to 4096 datagrams; further ones are lost. Every host also reaches itself at "127.0.0.1" and "::1".
// Only threads of the runtime may use it, which take turns, so it needs no lock. Destroy it while none is in a call.
class VirtualNetwork {
public:
    struct Faults {
        double loss = 0;        // probability that a datagram is lost
        double duplication = 0; // probability that it arrives twice
        Duration latency = Duration::zero();
        Duration jitter = Duration::zero(); // up to this much is added for each datagram, so that later ones overtake
        double straying = 0;                // probability of an extra delay
        Duration detour = Duration::zero(); // the longest extra delay, on top of latency and jitter
    };

    explicit VirtualNetwork(VirtualRuntime& runtime);
    ~VirtualNetwork();

    // Sets the faults for datagrams that are sent from now on.
    void setFaults(Faults newFaults);

    // The sockets of the host with this address ("192.168.1.7"), which is created by the first call. Peers see it in
    // IPv4-mapped form ("::ffff:192.168.1.7"), as a dual-stack socket does.
    DatagramSockets& host(const std::string& address);

    // Gives the host a further address, which no host may have yet. What is sent to it arrives at the same sockets.
    // What the host sends on its own account leaves from its first address.
    void addAddress(const std::string& address, const std::string& further);

    // Makes every later call of this kind on this host return -error, an errno value; 0 lets them succeed again. A
    // receive that already waits is not affected.
    enum class Call { open, bind, receive, send };
    void fail(const std::string& address, Call call, int error);

    // While a host is cut off, all datagrams to and from it are lost. No call fails.
    void cutOff(const std::string& address, bool isCutOff);

    // Gives the host a new address, which no host may have yet. Its sockets and ports stay; the old address is unused
    // afterwards.
    void move(const std::string& address, const std::string& newAddress);

    // Sends a datagram with a forged sender address. The faults apply to it too.
    void forge(const std::string& fromHost, std::uint16_t fromPort, const std::string& toHost, std::uint16_t toPort,
               ByteView bytes);

    // Drops all datagrams that have not arrived yet.
    void loseWhatIsUnderWay();

    // Sees each datagram that is sent or forged, with its sender, before the faults. On whichever thread sends it.
    std::function<void(const std::string& host, std::uint16_t port, ByteView bytes)> onDatagram;

private:
    class Host;

    void carry(const VirtualAddress& from, Host& receiver, const VirtualAddress& to, ByteView bytes);
    Host* find(const std::string& address);

    VirtualRuntime& runtime;
    Faults faults;
    int lastDescriptor = 999;
    std::map<std::string, std::unique_ptr<Host>> hosts;
};

} // namespace lumbrine
