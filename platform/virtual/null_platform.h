// Back ends that accept everything and do nothing, for tests, fuzzers and benchmarks of code that needs a platform and
// does not look at it. A double that looks at one call derives from one of these and overrides that call. A runtime of
// this kind is in still_runtime.h.
#pragma once

#include "platform/api/datagram_sockets.h"
#include "platform/api/midi_services.h"
#include "platform/api/service_discovery.h"
#include "platform/api/stream_socket.h"
#include "platform/api/system_info.h"

#include <cerrno>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lumbrine {

// Ports that nobody is connected to.
class NullMIDI : public MIDIServices {
public:
    MIDIStatus createClient(const std::string&, MIDIClientRef& client) override {
        client = 1;
        return 0;
    }
    MIDIStatus createSource(MIDIClientRef, const std::string&, MIDIEndpointRef& source) override {
        source = ++endpoints;
        return 0;
    }
    MIDIStatus createDestination(MIDIClientRef, const std::string&, MIDIReadBlock,
                                 MIDIEndpointRef& destination) override {
        destination = ++endpoints;
        return 0;
    }
    MIDIStatus setUniqueID(MIDIEndpointRef, std::int32_t) override { return 0; }
    MIDIStatus received(MIDIEndpointRef, ByteView) override { return 0; }

private:
    MIDIEndpointRef endpoints = 0;
};

// A socket to which nobody sends, and whose every peer has one address.
class NullDatagrams : public DatagramSockets {
public:
    int open() override { return 3; }
    int setReuseAddress(int) override { return 0; }
    int setDualStack(int) override { return 0; }
    int bind(int, std::uint16_t) override { return 0; }
    int localPort(int) override { return 0; }
    bool isOwnAddress(int, const PeerAddress&) override { return false; }
    int receive(int, std::span<std::uint8_t>, PeerAddress&) override { return 0; }
    int send(int, ByteView bytes, const PeerAddress&) override { return static_cast<int>(bytes.size()); }
    void name(const PeerAddress&, std::string& host, std::string& port) override {
        host = "::ffff:192.168.100.100";
        port = "52701";
    }
    bool resolve(const std::string&, std::uint16_t, PeerAddress&) override { return false; }
    void shutDown(int) override {}
    void close(int) override {}
};

// Every connection is refused, as if no service ran.
class NullStreams : public StreamSockets {
public:
    int open() override { return 4; }
    int connect(int, const std::string&, std::uint16_t, Duration) override { return -ECONNREFUSED; }
    int setReceiveTimeout(int, Duration) override { return 0; }
    int setSendTimeout(int, Duration) override { return 0; }
    int setNoDelay(int) override { return 0; }
    int setNoSignal(int) override { return 0; }
    int send(int, ByteView) override { return -ENOTCONN; }
    int receive(int, std::span<std::uint8_t>) override { return -ENOTCONN; }
    void close(int) override {}
    void shutDown() override {}
};

class NullAdvertiser : public ServiceAdvertiser {
public:
    std::unique_ptr<Advertisement> publish(AdvertisedService) override { return nullptr; }
};

// A computer about which nothing is known but its environment.
class NullComputer : public SystemInfo {
public:
    explicit NullComputer(std::map<std::string, std::string> variables = {}) : variables(std::move(variables)) {}

    std::optional<std::string> environment(const std::string& variable) const override {
        const auto found = variables.find(variable);
        return found == variables.end() ? std::nullopt : std::optional(found->second);
    }
    std::vector<std::string> preferredLanguages() const override { return {}; }
    std::optional<std::string> computerName() const override { return std::nullopt; }
    std::optional<std::string> primaryIPv4() const override { return std::nullopt; }

private:
    const std::map<std::string, std::string> variables;
};

} // namespace lumbrine
