#include "platform/macos/coremidi_connections.h"

#include "platform/macos/autorelease_scope.h"
#include "platform/macos/cf_text.h"
#include "platform/macos/midi_packets.h"

#include <atomic>
#include <string>
#include <utility>

namespace lumbrine {

namespace {

constexpr Duration betweenQuestions = seconds(0.001); // whether the last call of the reader has returned

bool isNamed(::MIDIEndpointRef endpoint, const std::string& name) {
    CFStringRef found = nullptr;
    if (::MIDIObjectGetStringProperty(endpoint, ::kMIDIPropertyName, &found) != 0 || found == nullptr) return false;
    const auto held = CFHolder<CFStringRef>::takingOver(found);
    return utf8Of(held.get()) == name;
}

// The first endpoint of the name, or 0.
template <typename Count, typename Get>
::MIDIEndpointRef find(const std::string& name, Count count, Get get) {
    const auto all = count();
    for (auto index = decltype(all){0}; index < all; ++index)
        if (const ::MIDIEndpointRef endpoint = get(index); isNamed(endpoint, name)) return endpoint;
    return 0;
}

// What CoreMIDI's thread calls. It may outlive the connection, because CoreMIDI may be about to call it.
struct Reader {
    const std::function<void(ByteView)> incoming;
    std::atomic<bool> isOpen{true};
    std::atomic<int> inside{0};

    void take(const ::MIDIPacketList* list) {
        ++inside;
        if (isOpen) forEachPacket(list, incoming);
        --inside;
    }
};

// A client with an input that the reader reads, and an output.
struct Plugs {
    ::MIDIClientRef client = 0;
    ::MIDIPortRef input = 0;
    ::MIDIPortRef output = 0;
};

class CoreMIDIConnection final : public MIDIConnection {
public:
    CoreMIDIConnection(Runtime& runtime, const std::string& portName, std::function<void(ByteView)> incoming)
        : runtime(runtime), name(portName), reader(std::make_shared<Reader>(std::move(incoming))),
          queue(runtime.serialQueue("com.tarnwick.lumbrine.midi host", Priority::userInitiated)) {
        queue->post([this] { lookAgainAndAgain(); });
    }

    ~CoreMIDIConnection() override {
        queue.reset();
        if (mine.client != 0) ::MIDIClientDispose(mine.client);
        reader->isOpen = false;
        while (reader->inside > 0)
            runtime.sleepFor(betweenQuestions);
    }

    CoreMIDIConnection(const CoreMIDIConnection&) = delete;
    CoreMIDIConnection& operator=(const CoreMIDIConnection&) = delete;

    void send(ByteView message) override {
        const ::MIDIEndpointRef theirs = destination;
        if (theirs == 0) return;
        const AutoreleaseScope scope;
        const MessageList list(message);
        if (list.get() == nullptr) return;
        if (::MIDISend(output, theirs, list.get()) != 0 && !looksSoon.exchange(true)) queue->post([this] { look(); });
    }

    bool connected() const override { return destination != 0; }

private:
    // All below is called on the queue.
    void lookAgainAndAgain() {
        look();
        queue->postAfter(CoreMIDIConnections::betweenLooks, [this] { lookAgainAndAgain(); });
    }

    void look() {
        const AutoreleaseScope scope;
        looksSoon = false;
        if (destination != 0 && !(isNamed(source, name) && isNamed(destination, name))) {
            destination = 0;
            ::MIDIPortDisconnectSource(mine.input, source);
            isStale = true;
        }
        if (destination == 0) plugIn();
    }

    void plugIn() {
        if (isStale && !renew()) return;
        const ::MIDIEndpointRef from = find(name, ::MIDIGetNumberOfSources, ::MIDIGetSource);
        const ::MIDIEndpointRef to = find(name, ::MIDIGetNumberOfDestinations, ::MIDIGetDestination);
        if (from == 0 || to == 0) return;
        isStale = ::MIDIPortConnectSource(mine.input, from, nullptr) != 0;
        if (isStale) return;
        source = from;
        output = mine.output;
        destination = to;
    }

    bool renew() {
        Plugs made;
        const bool isMade = make(made);
        const ::MIDIClientRef useless = isMade ? std::exchange(mine, made).client : made.client;
        if (useless != 0) ::MIDIClientDispose(useless);
        isStale = !isMade;
        return isMade;
    }

    bool make(Plugs& made) const {
        const CFHolder<CFStringRef> title = cfString(name + " host");
        if (!title) return false;
        const std::shared_ptr<Reader> kept = reader; // the block copies the pointer
        return ::MIDIClientCreateWithBlock(title.get(), &made.client,
                                           ^(const ::MIDINotification*){
                                           }) == 0 &&
               ::MIDIInputPortCreateWithBlock(made.client, title.get(), &made.input,
                                              ^(const ::MIDIPacketList* list, void* /*origin*/) {
                                                kept->take(list);
                                              }) == 0 &&
               ::MIDIOutputPortCreate(made.client, title.get(), &made.output) == 0;
    }

    Runtime& runtime;
    const std::string name;
    const std::shared_ptr<Reader> reader;

    // Of the queue.
    Plugs mine;
    ::MIDIEndpointRef source = 0; // while there is a destination
    bool isStale = true;          // what is mine belongs to a server that may have gone

    std::atomic<::MIDIPortRef> output{0};
    std::atomic<::MIDIEndpointRef> destination{0}; // 0: not connected
    std::atomic<bool> looksSoon{false};

    std::unique_ptr<SerialQueue> queue;
};

} // namespace

std::unique_ptr<MIDIConnection> CoreMIDIConnections::connect(const std::string& portName,
                                                             std::function<void(ByteView)> incoming) {
    return std::make_unique<CoreMIDIConnection>(runtime, portName, std::move(incoming));
}

} // namespace lumbrine
