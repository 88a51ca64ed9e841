// A world of virtual time around models under test: a network with phones, and Pro Tools on the other end of the MIDI
// ports, both played by the test in raw bytes.
#pragma once

#include "model/testing/tape.h"
#include "platform/api/service_discovery.h"
#include "platform/api/system_info.h"
#include "platform/virtual/memory_midi.h"
#include "platform/virtual/virtual_network.h"
#include "platform/virtual/virtual_runtime.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace lumbrine {

// Virtual time that notes how urgent the work is that it is given, counts the ticks of all timers, and whose sleeps may
// last longer than was asked.
class NotingRuntime final : public VirtualRuntime {
public:
    using VirtualRuntime::VirtualRuntime;

    void background(Priority priority, Task task) override {
        jobs.push_back(priority);
        VirtualRuntime::background(priority, std::move(task));
    }

    std::unique_ptr<SerialQueue> serialQueue(std::string label, Priority priority) override {
        queues[label] = priority;
        return VirtualRuntime::serialQueue(std::move(label), priority);
    }

    std::unique_ptr<RepeatingTimer> repeatOnMain(Duration interval, std::function<void()> tick) override {
        return VirtualRuntime::repeatOnMain(interval, [this, tick = std::move(tick)] {
            ++ticks;
            tick();
        });
    }

    void sleepFor(Duration duration) override { VirtualRuntime::sleepFor(duration + oversleep); }

    Duration oversleep{};
    int ticks = 0;
    std::vector<Priority> jobs; // of background jobs without a delay, since the last look
    std::map<std::string, Priority> queues;
};

struct ModelWorld {
    NotingRuntime runtime;
    VirtualNetwork network{runtime};
};

// The computer, as far as the receiver asks about it.
class FakeComputer final : public SystemInfo, public ServiceAdvertiser {
public:
    std::map<std::string, std::string> variables;
    std::optional<std::string> name = "Studio";
    std::optional<std::string> address = "192.168.1.2";
    std::vector<std::string> published; // "Studio _lumbrine._udp. local. 52700"
    std::vector<AdvertisedService> services;

    std::optional<std::string> environment(const std::string& variable) const override;
    std::vector<std::string> preferredLanguages() const override { return {}; }
    std::optional<std::string> computerName() const override { return name; }
    std::optional<std::string> primaryIPv4() const override { return address; }
    std::unique_ptr<Advertisement> publish(AdvertisedService service) override;
};

// A phone: one socket, every datagram that reaches it on a tape.
class Phone {
public:
    // `server`: where the receiver listens.
    Phone(ModelWorld& modelWorld, const std::string& address, const std::string& server, std::uint16_t serverPort);
    ~Phone();

    void send(const Bytes& datagram);

    // As the receiver calls it: "::ffff:192.168.1.7:49152".
    std::string key() const;

    Tape tape;

private:
    void receiveLoop();

    ModelWorld& world;
    const std::string host;
    DatagramSockets& sockets;
    PeerAddress receiver;
    int fd;
    bool open = true;
    std::unique_ptr<Thread> thread;
};

// Pro Tools' end of one surface. Ping replies and the announcements of the ports are left out of its tape.
class HostEnd {
public:
    HostEnd(ModelWorld& modelWorld, MemoryMIDI& midi, const std::string& portName);

    void send(const Bytes& packet) { connection->send(packet); }

    void led(int zone, int port, bool on); // zone select and port state
    void fader(int strip, double value);
    void name(int strip, const std::string& fourCharacters);
    void ring(int strip, int value, bool centre);
    void ping();
    void pingEverySecond(); // from now on
    void stopPinging() { pings.reset(); }

    Tape tape;
    Tape presence; // ping replies and announcements

private:
    ModelWorld& world;
    std::unique_ptr<MIDIConnection> connection;
    std::unique_ptr<RepeatingTimer> pings;
};

} // namespace lumbrine
