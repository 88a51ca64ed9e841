// A whole ReceiverModel in a virtual world, with Pro Tools and phones for the test to play.
#pragma once

#include "model/receiver_model.h"
#include "model/receiver_parts.h"
#include "model/testing/model_world.h"
#include "platform/portable/nlohmann_json.h"
#include "platform/virtual/memory_screen.h"
#include "platform/virtual/virtual_streams.h"

#include <memory>
#include <string>
#include <vector>

namespace lumbrine {

class ModelBench {
public:
    struct Options {
        bool japanese = false;
        std::map<std::string, std::string> variables = {};
        std::string address = "192.168.1.2";
        bool scripting = false; // the test is about the scripting service: nobody has been told of its absence
    };

    explicit ModelBench(ModelWorld& modelWorld) : ModelBench(modelWorld, Options{}) {}
    ModelBench(ModelWorld& modelWorld, const Options& options);

    // Lets jobs that keep the model alive come to their end.
    ~ModelBench();

    void createModel(const Options& options);

    // Starts the model and lets it announce itself: 0.3 s, after which the tapes and the lines are empty and the origin
    // of times is set. The next tick comes 0.1 s later.
    void start();

    void run(Duration duration) { world.runtime.runFor(duration); }

    // The times on all tapes count from now; what is on them is forgotten.
    void mark();

    std::unique_ptr<Phone> phone(const std::string& address);

    // What the surfaces' and a phone's tapes have gathered since the last look.
    std::vector<std::string> heardOn(HostEnd& surface) { return surface.tape.take(origin); }
    std::vector<std::string> heardBy(Phone& phone) { return phone.tape.take(origin); }
    std::vector<std::string> heardBy(Phone& phone, std::uint8_t type) {
        return phone.tape.takeStarting(origin, {0x01, type});
    }

    // The lines written to the log since the last look.
    std::vector<std::string> takeLines() { return std::exchange(lines, {}); }

    // What a model knows beyond what it publishes.
    static const ReceiverState& stateOf(const ReceiverModel& model) { return model.parts->state; }

    // By a client in control, now, which was told nothing yet.
    Asked asked() const { return {.owner = {.number = 1, .isNewcomers = true}, .at = world.runtime.now()}; }

    ReceiverState& state() { return model->parts->state; }
    ReceiverParts& parts() { return *model->parts; }

    // The session as a scan would have left it, its first tracks on the surfaces.
    void setTrackMap(const std::vector<std::string>& names, int bankOffset);

    // Pro Tools has been seen to react to bank buttons at once.
    void learnThatTheHostIsQuick();

    ModelWorld& world;
    FakeComputer computer;
    MemoryMIDI midi;
    VirtualStreams streams; // nobody listens
    NlohmannJSON json;
    MemoryScreen screen; // shows nothing
    std::vector<std::string> lines;
    HostEnd surfaceA;
    HostEnd surfaceB;
    std::shared_ptr<ReceiverModel> model;
    TimePoint origin = distantPast;

private:
    const std::string hostAddress;
};

} // namespace lumbrine
