#include "platform/linux/midi_backend.h"

#include "platform/linux/jack_midi_connections.h"
#include "platform/linux/jack_midi_services.h"
#include "platform/linux/rtmidi_connections.h"
#include "platform/linux/rtmidi_services.h"

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <utility>

namespace lumbrine {

namespace {

class AbsentMIDIServices final : public MIDIServices {
public:
    explicit AbsentMIDIServices(MIDIStatus status) : status(status) {}

    MIDIStatus createClient(const std::string&, MIDIClientRef&) override { return status; }
    MIDIStatus createSource(MIDIClientRef, const std::string&, MIDIEndpointRef&) override { return status; }
    MIDIStatus createDestination(MIDIClientRef, const std::string&, MIDIReadBlock, MIDIEndpointRef&) override {
        return status;
    }
    MIDIStatus setUniqueID(MIDIEndpointRef, std::int32_t) override { return status; }
    MIDIStatus received(MIDIEndpointRef, ByteView) override { return status; }

private:
    const MIDIStatus status;
};

// Chooses the services as soon as the JACK server has answered or its time is over. Where that finds no MIDI system, it
// chooses JACK once a server is there. Main thread.
class Choice {
public:
    Choice(Runtime& runtime, Task found)
        : runtime(runtime), found(std::move(found)), jack(JackServer::start(runtime)) {}

    static std::shared_ptr<Choice> begin(Runtime& runtime, Task whenFound) {
        const auto choice = std::make_shared<Choice>(runtime, std::move(whenFound));
        const std::weak_ptr<Choice> open = choice;
        choice->jack->watch([&runtime, open](bool isThere) {
            runtime.postMain([open, isThere] {
                if (const auto held = open.lock()) held->hear(isThere);
            });
        });
        runtime.postMainAfter(JackServer::openingTime, [open] {
            if (const auto waiting = open.lock()) waiting->make(-ETIMEDOUT);
        });
        return choice;
    }

    MIDIServices& made() { return *services; }

    std::function<void(bool isThere)> changed = [](bool) {};

private:
    void hear(bool isThere) {
        if (!isMade) {
            make(isThere ? 0 : -ENODEV);
        } else {
            if (isThere) takeJack();
            changed(isThere);
        }
    }

    void make(MIDIStatus ofJack) {
        if (std::exchange(isMade, true)) return;
        if (ofJack == 0) {
            takeJack();
        } else if (RtMidiServices::alsaAnswers()) {
            services = std::make_unique<RtMidiServices>(runtime);
            jack.reset();
        } else {
            services = std::make_unique<AbsentMIDIServices>(ofJack);
        }
        found();
    }

    void takeJack() {
        if (jack) services = std::make_unique<JackMIDIServices>(runtime, std::move(jack));
    }

    Runtime& runtime;
    Task found;
    std::shared_ptr<JackServer> jack; // until it is in use, or ALSA is
    bool isMade = false;
    std::unique_ptr<MIDIServices> services = std::make_unique<AbsentMIDIServices>(-ENODEV);
};

class ChosenMIDIServices final : public MIDIServices {
public:
    explicit ChosenMIDIServices(std::shared_ptr<Choice> choice) : choice(std::move(choice)) {}

    MIDIStatus createClient(const std::string& name, MIDIClientRef& client) override {
        return choice->made().createClient(name, client);
    }
    MIDIStatus createSource(MIDIClientRef client, const std::string& name, MIDIEndpointRef& source) override {
        return choice->made().createSource(client, name, source);
    }
    MIDIStatus createDestination(MIDIClientRef client, const std::string& name, MIDIReadBlock read,
                                 MIDIEndpointRef& destination) override {
        return choice->made().createDestination(client, name, std::move(read), destination);
    }
    void onReturn(MIDIClientRef client, std::function<void()> back) override {
        choice->made().onReturn(client, std::move(back));
    }
    void onService(std::function<void(bool)> changed) override { choice->changed = std::move(changed); }
    std::optional<bool> isConnected(MIDIEndpointRef endpoint) const override {
        return choice->made().isConnected(endpoint);
    }
    MIDIStatus setUniqueID(MIDIEndpointRef endpoint, std::int32_t uniqueID) override {
        return choice->made().setUniqueID(endpoint, uniqueID);
    }
    MIDIStatus received(MIDIEndpointRef source, ByteView message) override {
        return choice->made().received(source, message);
    }

private:
    const std::shared_ptr<Choice> choice;
};

class AbsentMIDIConnections final : public MIDIConnections {
public:
    std::unique_ptr<MIDIConnection> connect(const std::string&, std::function<void(ByteView)>) override {
        return nullptr;
    }
};

} // namespace

MIDIBackend::MIDIBackend() {
    // Otherwise PipeWire's JACK turns the ping 90 00 00 into a note-off. A value set by the user is kept.
    ::setenv("PIPEWIRE_PROPS", "{ jack.fix-midi-events = false }", 0); // NOLINT(concurrency-mt-unsafe): at the start
}

std::unique_ptr<MIDIServices> MIDIBackend::services(Runtime& runtime, Task found) const {
    return std::make_unique<ChosenMIDIServices>(Choice::begin(runtime, std::move(found)));
}

std::unique_ptr<MIDIConnections> MIDIBackend::connections(Runtime& runtime) const {
    struct Answer {
        std::atomic<bool> yes{false};
        Bell came;
    };
    const auto answer = std::make_shared<Answer>();
    std::shared_ptr<JackServer> jack = JackServer::start(runtime);
    jack->watch([answer](bool answers) {
        answer->yes = answers;
        answer->came.ring();
    });
    answer->came.waitFor(JackServer::openingTime);
    if (answer->yes) return std::make_unique<JackMIDIConnections>(runtime, std::move(jack));
    if (RtMidiServices::alsaAnswers()) return std::make_unique<RtMidiConnections>(runtime);
    return std::make_unique<AbsentMIDIConnections>();
}

} // namespace lumbrine
