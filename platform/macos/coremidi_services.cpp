#include "platform/macos/coremidi_services.h"

#include "platform/macos/autorelease_scope.h"
#include "platform/macos/cf_text.h"
#include "platform/macos/midi_packets.h"

#include <CoreMIDI/CoreMIDI.h>

#include <algorithm>
#include <type_traits>
#include <utility>

namespace lumbrine {

namespace {

constexpr MIDIStatus badArgument = -50;            // paramErr, the system's code for an invalid argument
constexpr Duration betweenChecks = seconds(0.005); // whether the server has answered

} // namespace

struct CoreMIDIServices::Client {
    const std::string name;
    ::MIDIClientRef ref = 0; // 0 while the server is away; so are those of ports
};

struct CoreMIDIServices::Port {
    const std::shared_ptr<const Client> client;
    const std::string name;
    const MIDIReadBlock read; // empty for a source
    const std::function<void()> back;
    std::optional<std::int32_t> uniqueID = {};
    std::atomic<::MIDIEndpointRef> ref{0};
    std::atomic<bool> isBack{false}; // made again, and nothing has arrived since
};

CoreMIDIServices::CoreMIDIServices(Runtime& runtime)
    : runtime(runtime), queue(runtime.serialQueue("com.tarnwick.lumbrine.midi", Priority::userInitiated)) {}

CoreMIDIServices::~CoreMIDIServices() {
    queue.reset();
    closeAll();
}

// Asks the server on the queue and waits for its answer, as long as a user may wait for a window. What it makes later
// stays: the next creation call of the same name returns it.
MIDIStatus CoreMIDIServices::ask(std::function<MIDIStatus()> question) {
    enum class State { open, answered, abandoned };
    struct Answer {
        std::atomic<State> state{State::open};
        MIDIStatus status = 0;
    };
    const auto answer = std::make_shared<Answer>();
    queue->post([this, answer, asked = std::move(question)] {
        const AutoreleaseScope scope;
        answer->status = asked();
        const bool isLate = answer->state.exchange(State::answered) == State::abandoned;
        if (isLate && answer->status == 0) tell(true);
    });
    const TimePoint end = runtime.now() + openingTime;
    while (answer->state == State::open && runtime.now() < end)
        runtime.sleepFor(betweenChecks);
    const bool isAnswered = answer->state.exchange(State::abandoned) == State::answered;
    return isAnswered ? answer->status : MIDIStatus{::kMIDIServerStartErr};
}

MIDIStatus CoreMIDIServices::createClient(const std::string& name, MIDIClientRef& client) {
    if (!cfString(name)) return badArgument;
    const auto made = std::make_shared<MIDIClientRef>(0);
    const MIDIStatus status = ask([this, name, made] {
        auto place = std::ranges::find(clients, name, [](const auto& each) { return each->name; });
        if (place == clients.end()) place = clients.insert(place, std::make_shared<Client>(name));
        *made = static_cast<MIDIClientRef>(place - clients.begin() + 1);
        if (!std::exchange(isLookedAfter, true)) lookAfter();
        const MIDIStatus opened = open(**place);
        if (opened != 0) isThere = false;
        return opened;
    });
    if (status == 0) client = *made;
    return status;
}

MIDIStatus CoreMIDIServices::createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) {
    return create(client, name, {}, source);
}

MIDIStatus CoreMIDIServices::createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                               MIDIEndpointRef& destination) {
    return create(client, name, std::move(read), destination);
}

MIDIStatus CoreMIDIServices::create(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                    MIDIEndpointRef& endpoint) {
    if (!cfString(name)) return badArgument;
    const auto made = std::make_shared<MIDIEndpointRef>(0);
    const MIDIStatus status = ask([this, client, name, block = std::move(read), back = returns[client], made] {
        if (client == 0 || client > clients.size()) return MIDIStatus{::kMIDIInvalidClient};
        const auto& owner = clients[client - 1];
        auto place = std::ranges::find_if(ports, [&](const auto& port) {
            return port->client == owner && port->name == name && !port->read == !block;
        });
        if (place == ports.end()) {
            if (ports.size() == maxPorts) return badArgument;
            const auto port = std::make_shared<Port>(owner, name, block, back);
            if (const MIDIStatus opened = open(port); opened != 0) return opened;
            place = ports.insert(place, port);
            published[ports.size()] = port.get();
        }
        *made = static_cast<MIDIEndpointRef>(place - ports.begin() + 1);
        return MIDIStatus{0};
    });
    if (status == 0) endpoint = *made;
    return status;
}

void CoreMIDIServices::onReturn(MIDIClientRef client, std::function<void()> back) {
    returns[client] = std::move(back);
}

void CoreMIDIServices::onService(std::function<void(bool isThere)> observer) {
    changed = std::move(observer);
}

MIDIStatus CoreMIDIServices::setUniqueID(MIDIEndpointRef endpoint, std::int32_t uniqueID) {
    return ask([this, endpoint, uniqueID] {
        if (endpoint == 0 || endpoint > ports.size()) return MIDIStatus{::kMIDIUnknownEndpoint};
        Port& port = *ports[endpoint - 1];
        port.uniqueID = uniqueID;
        return identify(port);
    });
}

MIDIStatus CoreMIDIServices::open(Client& client) {
    if (client.ref != 0) return 0;
    return ::MIDIClientCreateWithBlock(cfString(client.name).get(), &client.ref,
                                       ^(const ::MIDINotification*){
                                       });
}

MIDIStatus CoreMIDIServices::open(const std::shared_ptr<Port>& port) {
    ::MIDIEndpointRef made = 0;
    MIDIStatus status = 0;
    if (!port->read) {
        status = ::MIDISourceCreate(port->client->ref, cfString(port->name).get(), &made);
    } else {
        // The block copies this pointer: CoreMIDI may be inside the block when the services end.
        const std::shared_ptr<Port> kept = port;
        status = ::MIDIDestinationCreateWithBlock(port->client->ref, cfString(port->name).get(), &made,
                                                  ^(const ::MIDIPacketList* list, void* /*origin*/) {
                                                    if (kept->isBack.exchange(false) && kept->back) kept->back();
                                                    forEachPacket(list, kept->read);
                                                  });
    }
    if (status == 0) port->ref = made;
    return status;
}

MIDIStatus CoreMIDIServices::identify(const Port& port) {
    return ::MIDIObjectSetIntegerProperty(port.ref, ::kMIDIPropertyUniqueID, *port.uniqueID);
}

void CoreMIDIServices::lookAfter() {
    queue->postAfter(betweenLooks, [this] {
        look();
        lookAfter();
    });
}

void CoreMIDIServices::look() {
    const AutoreleaseScope scope;
    lookSoon = false;
    if (!isThere) {
        if (restore()) report(true);
    } else if (isLost()) {
        closeAll();
        report(false);
    }
}

// Nobody tells that the server has ended; but what it made is unknown to the next one.
bool CoreMIDIServices::isLost() const {
    return std::ranges::any_of(ports, [](const auto& port) {
        std::int32_t uniqueID = 0;
        return ::MIDIObjectGetIntegerProperty(port->ref, ::kMIDIPropertyUniqueID, &uniqueID) != 0;
    });
}

bool CoreMIDIServices::restore() {
    const auto isOpened = [](auto& each) { return open(each) == 0; };
    for (const auto& port : ports)
        port->isBack = true; // before the first packet can arrive
    const bool all = std::ranges::all_of(clients, [&](const auto& client) { return isOpened(*client); }) &&
                     std::ranges::all_of(ports, isOpened);
    if (!all) {
        closeAll();
        return false;
    }
    for (const auto& port : ports)
        if (port->uniqueID) identify(*port);
    return true;
}

void CoreMIDIServices::closeAll() {
    for (auto port = ports.rbegin(); port != ports.rend(); ++port)
        if (const ::MIDIEndpointRef ref = (*port)->ref.exchange(0); ref != 0) ::MIDIEndpointDispose(ref);
    for (auto client = clients.rbegin(); client != clients.rend(); ++client)
        if (const ::MIDIClientRef ref = std::exchange((*client)->ref, 0); ref != 0) ::MIDIClientDispose(ref);
}

void CoreMIDIServices::report(bool nowThere) {
    isThere = nowThere;
    tell(nowThere);
}

void CoreMIDIServices::tell(bool nowThere) {
    runtime.postMain([observer = changed, nowThere] { observer(nowThere); });
}

MIDIStatus CoreMIDIServices::received(MIDIEndpointRef source, ByteView message) {
    Port* const port = source < published.size() ? published[source].load() : nullptr;
    if (port == nullptr) return ::kMIDIUnknownEndpoint;
    const ::MIDIEndpointRef ref = port->ref;
    if (ref == 0) return 0;       // the server is away
    const AutoreleaseScope scope; // the thread that sends never ends
    const MessageList list(message);
    if (list.get() == nullptr) return badArgument;
    const MIDIStatus status = ::MIDIReceived(ref, list.get());
    if (status != 0 && !lookSoon.exchange(true)) queue->post([this] { look(); });
    return status;
}

} // namespace lumbrine
