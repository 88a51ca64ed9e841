#include "platform/linux/jack_client.h"

#include <jack/jack.h>

#include <numeric>
#include <utility>
#include <vector>

namespace lumbrine {

namespace {

MIDIStatus statusOf(jack_status_t status) {
    return status != 0 ? static_cast<MIDIStatus>(status) : static_cast<MIDIStatus>(JackFailure);
}

} // namespace

JackClient::JackClient(Runtime& runtime, JackServer& server, std::string name, Reviewer reviewer)
    : runtime(runtime), server(server), name(std::move(name)), reviewer(std::move(reviewer)) {}

JackClient::Pointer JackClient::make(Runtime& rt, JackServer& jackServer, std::string clientName,
                                     Reviewer changeReviewer) {
    return Pointer(new JackClient(rt, jackServer, std::move(clientName), std::move(changeReviewer)));
}

void JackClient::Ending::operator()(JackClient* client) const {
    // Shared with the job on the server thread: whichever of the two is last deletes the client.
    const std::shared_ptr<JackClient> ending(client, [](JackClient* last) { delete last; });
    if (ending->live && ending->portCount > 0) {
        ending->sendingLast = true;
        ending->lastSent.waitFor(lastCyclesTime);
    }
    if (ending->started) ending->server.remove(ending);
    ending->stopping = true;
    ending->arrivals.ring();
    ending->receiver.reset();
}

MIDIStatus JackClient::start() {
    started = true;
    return server.add(*this);
}

JackOutput* JackClient::addOutput(const std::string& portName) {
    auto port = std::make_shared<JackOutput>(runtime, portName, live);
    // The pointer stays valid once the port is added, because ports are never removed before the client is deleted.
    JackOutput* const added = port.get();
    return add(std::move(port)) ? added : nullptr;
}

JackInput* JackClient::addInput(const std::string& portName, std::function<void(ByteView)> read,
                                std::function<void()> isBack) {
    auto port = std::make_shared<JackInput>(portName, std::move(read), std::move(isBack));
    JackInput* const added = port.get();
    if (!add(std::move(port))) return nullptr;
    if (!receiver) receiver = runtime.startThread("midi receive", [this] { receive(); });
    return added;
}

bool JackClient::add(std::shared_ptr<JackPort> port) {
    // Shared, because the job may run after this function has given up waiting for it.
    const auto added = std::make_shared<std::atomic<bool>>(false);
    server.run(
        [this, port = std::move(port), added] {
            const std::size_t count = portCount;
            if (count == maxPorts || (client != nullptr && !port->registerWith(client))) return;
            // The process callback reads the list without a lock: first the port, then the count that makes it visible.
            ports[count] = port;
            portCount.store(count + 1, std::memory_order_release);
            *added = true;
        },
        JackServer::openingTime);
    return *added;
}

std::uint64_t JackClient::dropped() const {
    return std::accumulate(ports.begin(),
                           ports.begin() + static_cast<std::ptrdiff_t>(portCount.load(std::memory_order_acquire)),
                           std::uint64_t{0}, [](std::uint64_t sum, const auto& port) { return sum + port->dropped(); });
}

MIDIStatus JackClient::open() {
    jack_status_t status{};
    client = jack_client_open(name.c_str(), JackNoStartServer, &status);
    if (client == nullptr) return statusOf(status);

    const std::size_t count = portCount;
    for (std::size_t i = 0; i < count; ++i) {
        if (ports[i]->registerWith(client)) continue;
        close();
        return JackFailure;
    }
    // Callbacks must be set before jack_activate. `live` first, because the shutdown callback clears it.
    live = true;
    cycleCount = 0;
    setCallbacks();
    if (jack_activate(client) == 0) return 0;
    close();
    return JackFailure;
}

void JackClient::setCallbacks() {
    jack_set_process_callback(client, &JackClient::process, this);
    const auto onShutdown = [](jack_status_t /*code*/, const char* /*reason*/, void* self) {
        static_cast<JackClient*>(self)->live = false;
        static_cast<JackClient*>(self)->server.look();
    };
    jack_on_info_shutdown(client, onShutdown, this);
    if (!reviewer) return;

    // libjack forbids calls from these callbacks, so they only wake the server thread, which then looks for changes.
    const auto onPort = [](jack_port_id_t /*port*/, int /*there*/, void* self) {
        static_cast<JackClient*>(self)->server.look();
    };
    const auto onConnection = [](jack_port_id_t /*a*/, jack_port_id_t /*b*/, int /*connected*/, void* self) {
        static_cast<JackClient*>(self)->server.look();
    };
    jack_set_port_registration_callback(client, onPort, this);
    jack_set_port_connect_callback(client, onConnection, this);
}

void JackClient::close() {
    live = false;
    if (client == nullptr) return;
    jack_client_close(std::exchange(client, nullptr));
    if (reviewer) reviewer(nullptr);
}

void JackClient::askServer() {
    // Any question will do that only the server can answer. The answer is ignored on purpose.
    jack_free(jack_get_uuid_for_client_name(client, name.c_str()));
}

int JackClient::process(jack_nframes_t frames, void* self) {
    auto& me = *static_cast<JackClient*>(self);
    const std::size_t count = me.portCount.load(std::memory_order_acquire);
    bool arrived = false;
    const bool isLast = me.sendingLast; // read before the rings, so that it finds all that was sent before
    bool waiting = false;
    me.server.beginCycle();
    for (std::size_t i = 0; i < count; ++i) {
        waiting |= me.ports[i]->hasWaiting();
        arrived |= me.ports[i]->process(frames);
    }
    me.server.endCycle();
    // The cycle before this one has taken the last events to their readers.
    if (isLast && !waiting) me.lastSent.ring();
    if (arrived) me.arrivals.ring();
    // The first cycle shows that the server runs this client; the server thread waits for it.
    if (me.cycleCount.fetch_add(1) == 0) me.server.look();
    return 0;
}

void JackClient::receive() {
    std::vector<std::uint8_t> scratch(jackPortCapacity);
    while (!stopping) {
        arrivals.wait();
        const std::size_t count = portCount.load(std::memory_order_acquire);
        for (std::size_t i = 0; i < count; ++i)
            ports[i]->deliver(scratch);
    }
}

} // namespace lumbrine
