#include "model/testing/model_world.h"

#include <array>

namespace lumbrine {

std::optional<std::string> FakeComputer::environment(const std::string& variable) const {
    const auto found = variables.find(variable);
    if (found == variables.end()) return std::nullopt;
    return found->second;
}

std::unique_ptr<Advertisement> FakeComputer::publish(AdvertisedService service) {
    published.push_back(service.name + " " + service.type + " " + service.domain + " " + std::to_string(service.port));
    services.push_back(std::move(service));
    return std::make_unique<Advertisement>();
}

// ---- Phone

Phone::Phone(ModelWorld& modelWorld, const std::string& address, const std::string& server, std::uint16_t serverPort)
    : world(modelWorld), host(address), sockets(world.network.host(address)), fd(sockets.open()) {
    sockets.bind(fd, 0);
    sockets.resolve(server, serverPort, receiver);
    thread = world.runtime.startThread("phone " + address, [this] { receiveLoop(); });
}

Phone::~Phone() {
    open = false;
    sockets.shutDown(fd);
    thread.reset();
    sockets.close(fd);
}

void Phone::send(const Bytes& datagram) {
    sockets.send(fd, datagram, receiver);
}

std::string Phone::key() const {
    return "::ffff:" + host + ":" + std::to_string(sockets.localPort(fd));
}

void Phone::receiveLoop() {
    std::array<std::uint8_t, 2048> buffer{};
    while (open) {
        PeerAddress from;
        const int received = sockets.receive(fd, buffer, from);
        if (received > 0) tape.record(world.runtime.now(), ByteView(buffer).first(static_cast<std::size_t>(received)));
    }
}

// ---- HostEnd

HostEnd::HostEnd(ModelWorld& modelWorld, MemoryMIDI& midi, const std::string& portName)
    : world(modelWorld), connection(midi.connect(portName, [this](ByteView packet) {
          const bool isPresence = packet[0] == 0xFF || packet[0] == 0x90;
          (isPresence ? presence : tape).record(world.runtime.now(), packet);
      })) {}

void HostEnd::led(int zone, int port, bool on) {
    send({0xB0, 0x0C, static_cast<std::uint8_t>(zone)});
    send({0xB0, 0x2C, static_cast<std::uint8_t>(port | (on ? 0x40 : 0))});
}

void HostEnd::fader(int strip, double value) {
    const int raw = static_cast<int>(value * 16383);
    send({0xB0, static_cast<std::uint8_t>(strip), static_cast<std::uint8_t>(raw >> 7)});
    send({0xB0, static_cast<std::uint8_t>(0x20 + strip), static_cast<std::uint8_t>(raw & 0x7F)});
}

void HostEnd::name(int strip, const std::string& fourCharacters) {
    Bytes message{0xF0, 0x00, 0x00, 0x66, 0x05, 0x00, 0x10, static_cast<std::uint8_t>(strip)};
    message.insert(message.end(), fourCharacters.begin(), fourCharacters.end());
    message.push_back(0xF7);
    send(message);
}

void HostEnd::ring(int strip, int value, bool centre) {
    send({0xB0, static_cast<std::uint8_t>(0x10 + strip), static_cast<std::uint8_t>(value | (centre ? 0x40 : 0))});
}

void HostEnd::ping() {
    send({0x90, 0x00, 0x00});
}

void HostEnd::pingEverySecond() {
    ping();
    pings = world.runtime.repeatOnMain(seconds(1.0), [this] { ping(); });
}

} // namespace lumbrine
