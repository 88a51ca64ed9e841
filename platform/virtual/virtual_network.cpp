#include "platform/virtual/virtual_network.h"

#include "platform/virtual/virtual_host.h"

namespace lumbrine {

VirtualNetwork::VirtualNetwork(VirtualRuntime& rt) : runtime(rt) {}

VirtualNetwork::~VirtualNetwork() = default;

void VirtualNetwork::setFaults(Faults newFaults) {
    faults = newFaults;
}

DatagramSockets& VirtualNetwork::host(const std::string& address) {
    const std::string form = dualStackForm(address).value_or(address);
    std::unique_ptr<Host>& machine = hosts[form];
    if (!machine) machine = std::make_unique<Host>(*this, form);
    return *machine;
}

VirtualNetwork::Host* VirtualNetwork::find(const std::string& address) {
    const auto found = hosts.find(address);
    return found == hosts.end() ? nullptr : found->second.get();
}

void VirtualNetwork::fail(const std::string& address, Call call, int error) {
    host(address);
    find(dualStackForm(address).value_or(address))->fail(call, error);
}

void VirtualNetwork::carry(const PeerAddress& from, const std::string& toHost, std::uint16_t toPort, ByteView bytes) {
    Host* const receiver = find(toHost);
    if (receiver == nullptr) return;
    const auto happens = [this](double probability) {
        return probability > 0 && static_cast<double>(runtime.random() >> 11) * 0x1p-53 < probability;
    };
    if (happens(faults.loss)) return;
    const int copies = happens(faults.duplication) ? 2 : 1;
    for (int i = 0; i < copies; ++i) {
        Duration delay = faults.latency;
        if (faults.jitter > Duration::zero())
            delay += Duration(runtime.random() % static_cast<std::uint64_t>(faults.jitter.count() + 1));
        receiver->arrive(runtime.now() + delay, toPort, from, bytes);
    }
}

} // namespace lumbrine
