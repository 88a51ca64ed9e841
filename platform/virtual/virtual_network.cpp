#include "platform/virtual/virtual_network.h"

#include "platform/virtual/virtual_host.h"

#include <cassert>
#include <utility>

namespace lumbrine {

VirtualNetwork::VirtualNetwork(VirtualRuntime& runtime) : runtime(runtime) {}

VirtualNetwork::~VirtualNetwork() = default;

void VirtualNetwork::setFaults(Faults newFaults) {
    faults = newFaults;
}

DatagramSockets& VirtualNetwork::host(const std::string& address) {
    // A dual-stack socket reports IPv4 peers as ::ffff:a.b.c.d (RFC 4291, section 2.5.5.2), so hosts are known by that
    // form.
    const std::string form = dualStackForm(address).value_or(address);
    std::unique_ptr<Host>& machine = hosts[form];
    if (!machine) machine = std::make_unique<Host>(*this, form);
    return *machine;
}

VirtualNetwork::Host* VirtualNetwork::find(const std::string& address) {
    for (const auto& [first, machine] : hosts)
        if (machine->hasAddress(address)) return machine.get();
    return nullptr;
}

void VirtualNetwork::addAddress(const std::string& address, const std::string& further) {
    const std::string form = dualStackForm(further).value_or(further);
    assert(find(form) == nullptr);
    host(address);
    find(dualStackForm(address).value_or(address))->addAddress(form);
}

void VirtualNetwork::fail(const std::string& address, Call call, int error) {
    host(address);
    find(dualStackForm(address).value_or(address))->fail(call, error);
}

void VirtualNetwork::cutOff(const std::string& address, bool isCutOff) {
    host(address);
    find(dualStackForm(address).value_or(address))->cutOff(isCutOff);
}

void VirtualNetwork::move(const std::string& address, const std::string& newAddress) {
    const std::string newForm = dualStackForm(newAddress).value_or(newAddress);
    assert(!hosts.contains(newForm));
    auto machine = hosts.extract(dualStackForm(address).value_or(address));
    if (machine.empty()) return;
    machine.mapped()->moveTo(newForm);
    machine.key() = newForm;
    hosts.insert(std::move(machine));
}

void VirtualNetwork::forge(const std::string& fromHost, std::uint16_t fromPort, const std::string& toHost,
                           std::uint16_t toPort, ByteView bytes) {
    Host* const receiver = find(dualStackForm(toHost).value_or(toHost));
    if (receiver != nullptr && receiver->isReachable())
        carry({dualStackForm(fromHost).value_or(fromHost), fromPort}, *receiver,
              {dualStackForm(toHost).value_or(toHost), toPort}, bytes);
}

void VirtualNetwork::loseWhatIsUnderWay() {
    for (const auto& [address, machine] : hosts)
        machine->loseWhatIsUnderWay();
}

void VirtualNetwork::carry(const VirtualAddress& from, Host& receiver, const VirtualAddress& to, ByteView bytes) {
    // The upper 53 bits fill a double's mantissa: evenly distributed over [0, 1). A fault that is off draws no number.
    const auto happens = [this](double probability) {
        return probability > 0 && static_cast<double>(runtime.random() >> 11) * 0x1p-53 < probability;
    };
    const auto upTo = [this](Duration most) {
        return Duration(runtime.random() % static_cast<std::uint64_t>(most.count() + 1));
    };
    if (onDatagram) onDatagram(from.host, from.port, bytes);
    if (happens(faults.loss)) return;
    PeerAddress sender = pack(from);
    setSpokenTo(sender, to.host);
    const int copies = happens(faults.duplication) ? 2 : 1;
    for (int i = 0; i < copies; ++i) {
        Duration delay = faults.latency;
        if (faults.jitter > Duration::zero()) delay += upTo(faults.jitter);
        if (happens(faults.straying)) delay += upTo(faults.detour);
        receiver.arrive(runtime.now() + delay, to.port, sender, bytes);
    }
}

} // namespace lumbrine
