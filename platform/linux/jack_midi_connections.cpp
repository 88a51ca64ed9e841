#include "platform/linux/jack_midi_connections.h"

#include "platform/linux/jack_client.h"

#include <jack/jack.h>

#include <string_view>
#include <utility>
#include <vector>

namespace lumbrine {

namespace {

// The full names of all ports with this short name, in any client.
std::vector<std::string> portsNamed(jack_client_t* client, std::string_view shortName, unsigned long flags) {
    const std::unique_ptr<const char*, decltype(&jack_free)> all(
        jack_get_ports(client, nullptr, JACK_DEFAULT_MIDI_TYPE, flags), &jack_free);
    std::vector<std::string> found;
    for (const char** name = all.get(); name != nullptr && *name != nullptr; ++name) {
        const std::string_view full = *name;
        if (full.substr(full.find(':') + 1) == shortName) found.emplace_back(full);
    }
    return found;
}

enum class Link { absent, made, pending };

// The state of a connection that the server thread uses. Shared, because it may outlive the connection.
class Plugs {
public:
    explicit Plugs(std::string name) : name(std::move(name)) {}

    bool review(jack_client_t* opened) {
        if (opened == nullptr) {
            isConnected = false;
            return true;
        }
        const Link fromSource = connectFirst(opened, JackPortIsOutput);
        const Link toDestination = connectFirst(opened, JackPortIsInput);
        isConnected = fromSource == Link::made && toDestination == Link::made;
        return fromSource != Link::pending && toDestination != Link::pending;
    }

    // Set before the client is opened.
    JackOutput* output = nullptr;
    JackInput* input = nullptr;

    std::atomic<bool> isConnected{false};

private:
    Link connectFirst(jack_client_t* opened, unsigned long flags) const {
        const std::vector<std::string> candidates = portsNamed(opened, name, flags);
        if (candidates.empty()) return Link::absent;
        const bool fromThem = flags == JackPortIsOutput;
        const JackPort& mine = fromThem ? static_cast<const JackPort&>(*input) : *output;
        for (const std::string& candidate : candidates)
            if (mine.isConnectedTo(candidate)) return Link::made;
        const std::string own = mine.fullName();
        const std::string& theirs = candidates.front();
        // Not made yet: JACK carries events over a new connection only from the start of one of the next cycles.
        if (fromThem) {
            jack_connect(opened, theirs.c_str(), own.c_str());
        } else {
            jack_connect(opened, own.c_str(), theirs.c_str());
        }
        return Link::pending;
    }

    const std::string name;
};

class JackMIDIConnection final : public MIDIConnection {
public:
    JackMIDIConnection(Runtime& runtime, std::shared_ptr<JackServer> server, const std::string& name,
                       std::function<void(ByteView)> incoming)
        : server(std::move(server)), plugs(std::make_shared<Plugs>(name)),
          client(JackClient::make(runtime, *this->server, name + " host",
                                  [plugs = plugs](jack_client_t* opened) { return plugs->review(opened); })) {
        plugs->output = client->addOutput(name + " out");
        plugs->input = client->addInput(name + " in", std::move(incoming));
        if (plugs->output != nullptr && plugs->input != nullptr) client->start();
    }

    void send(ByteView message) override {
        if (plugs->output != nullptr) plugs->output->send(message);
    }
    bool connected() const override { return !client->lost() && plugs->isConnected; }

private:
    const std::shared_ptr<JackServer> server;
    const std::shared_ptr<Plugs> plugs;
    const JackClient::Pointer client;
};

} // namespace

JackMIDIConnections::JackMIDIConnections(Runtime& runtime, std::shared_ptr<JackServer> server)
    : runtime(runtime), server(std::move(server)) {}

std::unique_ptr<MIDIConnection> JackMIDIConnections::connect(const std::string& portName,
                                                             std::function<void(ByteView)> incoming) {
    return std::make_unique<JackMIDIConnection>(runtime, server, portName, std::move(incoming));
}

} // namespace lumbrine
