// A platform whose calls succeed and do nothing, so that a benchmark measures only the receiver's own work.
#pragma once

#include "model/state/receiver_platform.h"
#include "platform/portable/nlohmann_json.h"
#include "platform/portable/no_accessibility.h"
#include "platform/virtual/still_runtime.h"

#include <cerrno>

namespace lumbrine {

// Counts the messages that reach the source, and keeps the time of the last one if it was given a clock.
class NullMIDI final : public MIDIServices {
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
    MIDIStatus received(MIDIEndpointRef, ByteView) override {
        ++messages;
        if (onMessage) onMessage();
        return 0;
    }

    std::uint64_t messages = 0;
    std::function<void()> onMessage;

private:
    MIDIEndpointRef endpoints = 0;
};

class NullSockets final : public DatagramSockets {
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

// Every connection is refused, as if no scripting service ran.
class NullStreams final : public StreamSockets {
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

class NullAdvertiser final : public ServiceAdvertiser {
public:
    std::unique_ptr<Advertisement> publish(AdvertisedService) override { return nullptr; }
};

// Switches the service announcement off (QV_NO_BONJOUR) and lets the system choose a free port (QV_PORT=0).
class NullSystemInfo final : public SystemInfo {
public:
    std::optional<std::string> environment(const std::string& name) const override {
        if (name == "QV_NO_BONJOUR") return "1";
        if (name == "QV_PORT") return "0";
        return std::nullopt;
    }
    std::vector<std::string> preferredLanguages() const override { return {}; }
    std::optional<std::string> computerName() const override { return std::nullopt; }
    std::optional<std::string> primaryIPv4() const override { return std::nullopt; }
};

} // namespace lumbrine
