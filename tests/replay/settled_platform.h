// Back ends in front of those of a simulated session, which let what arrives wait until everybody rests: so it reaches
// the receiver at a moment that its time and its order among all that arrives tell completely, as a replay needs it.
#pragma once

#include "model/state/receiver_platform.h"
#include "platform/virtual/virtual_runtime.h"

#include <type_traits>
#include <utility>

namespace lumbrine::simulation {

class SettledMIDI final : public MIDIServices {
public:
    SettledMIDI(MIDIServices& itsReal, VirtualRuntime& itsRuntime) : real(itsReal), runtime(itsRuntime) {}

    MIDIStatus createClient(const std::string& name, MIDIClientRef& client) override {
        return real.createClient(name, client);
    }
    MIDIStatus createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) override {
        return real.createSource(client, name, source);
    }
    MIDIStatus createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                 MIDIEndpointRef& destination) override {
        MIDIReadBlock settled = [this, read = std::move(read)](ByteView packet) {
            runtime.rest();
            read(packet);
        };
        return real.createDestination(client, name, std::move(settled), destination);
    }
    MIDIStatus setUniqueID(MIDIEndpointRef endpoint, std::int32_t id) override {
        return real.setUniqueID(endpoint, id);
    }
    MIDIStatus received(MIDIEndpointRef source, ByteView message) override { return real.received(source, message); }

private:
    MIDIServices& real;
    VirtualRuntime& runtime;
};

class SettledSockets final : public DatagramSockets {
public:
    SettledSockets(DatagramSockets& itsReal, VirtualRuntime& itsRuntime) : real(itsReal), runtime(itsRuntime) {}

    int open() override { return real.open(); }
    int setReuseAddress(int fd) override { return real.setReuseAddress(fd); }
    int setDualStack(int fd) override { return real.setDualStack(fd); }
    int bind(int fd, std::uint16_t port) override { return real.bind(fd, port); }
    int localPort(int fd) override { return real.localPort(fd); }
    bool isOwnAddress(int fd, const PeerAddress& address) override { return real.isOwnAddress(fd, address); }
    int receive(int fd, std::span<std::uint8_t> buffer, PeerAddress& from) override {
        const int size = real.receive(fd, buffer, from);
        runtime.rest();
        return size;
    }
    int send(int fd, ByteView bytes, const PeerAddress& to) override { return real.send(fd, bytes, to); }
    void name(const PeerAddress& address, std::string& host, std::string& port) override {
        real.name(address, host, port);
    }
    bool resolve(const std::string& host, std::uint16_t port, PeerAddress& address) override {
        return real.resolve(host, port, address);
    }
    void shutDown(int fd) override { real.shutDown(fd); }
    void close(int fd) override { real.close(fd); }

private:
    DatagramSockets& real;
    VirtualRuntime& runtime;
};

class SettledStreams final : public StreamSockets {
public:
    SettledStreams(StreamSockets& itsReal, VirtualRuntime& itsRuntime) : real(itsReal), runtime(itsRuntime) {}

    int open() override { return real.open(); }
    int connect(int fd, const std::string& host, std::uint16_t port, Duration limit) override {
        return settled(real.connect(fd, host, port, limit));
    }
    int setReceiveTimeout(int fd, Duration limit) override { return real.setReceiveTimeout(fd, limit); }
    int setSendTimeout(int fd, Duration limit) override { return real.setSendTimeout(fd, limit); }
    int setNoDelay(int fd) override { return real.setNoDelay(fd); }
    int setNoSignal(int fd) override { return real.setNoSignal(fd); }
    int send(int fd, ByteView bytes) override {
        const TimePoint begun = runtime.now();
        const int result = real.send(fd, bytes);
        return result < 0 || runtime.now() > begun ? settled(result) : result;
    }
    int receive(int fd, std::span<std::uint8_t> buffer) override { return settled(real.receive(fd, buffer)); }
    void close(int fd) override { real.close(fd); }
    void shutDown() override { real.shutDown(); }

private:
    int settled(int result) {
        runtime.rest();
        return result;
    }

    StreamSockets& real;
    VirtualRuntime& runtime;
};

// What is answered at once, is.
class SettledScreen final : public Accessibility {
public:
    SettledScreen(Accessibility& itsReal, VirtualRuntime& itsRuntime) : real(itsReal), runtime(itsRuntime) {}

    bool isTrusted() override { return real.isTrusted(); }
    bool isTrustedOrPrompt() override { return real.isTrustedOrPrompt(); }
    std::optional<std::int32_t> runningApplication(std::string_view bundle) override {
        return settled([&] { return real.runningApplication(bundle); });
    }
    ElementHandle applicationElement(std::int32_t process) override { return real.applicationElement(process); }
    std::expected<std::vector<std::optional<AttributeValue>>, ScreenFailure>
    attributes(const ElementHandle& element, std::span<const std::string_view> names) override {
        return settled([&] { return real.attributes(element, names); });
    }
    bool perform(const ElementHandle& element, std::string_view action) override {
        return settled([&] { return real.perform(element, action); });
    }

private:
    template <typename Call>
    std::invoke_result_t<Call> settled(Call call) {
        const TimePoint begun = runtime.now();
        auto answer = call();
        if (runtime.now() > begun && !runtime.onMain()) runtime.rest();
        return answer;
    }

    Accessibility& real;
    VirtualRuntime& runtime;
};

} // namespace lumbrine::simulation
