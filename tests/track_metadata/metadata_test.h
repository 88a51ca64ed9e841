// A model whose map has three tracks, beside a scripting service that says what the test wants.
#pragma once

#include "model/testing/model_test.h"
#include "remote/command_builder.h"
#include "tests/ptsl_client/envelope_service.h"

namespace lumbrine {

class MetadataTest : public ::testing::Test {
protected:
    static constexpr std::uint64_t trackListCommand = 3;
    static constexpr std::uint64_t registerCommand = 70;
    static constexpr std::uint64_t muteCommand = 85;
    static constexpr std::uint64_t soloCommand = 86;
    static constexpr std::uint64_t inputMonitorCommand = 90;

    explicit MetadataTest(bool japanese = false) : bench(world, {.japanese = japanese, .scripting = true}) {
        bench.setTrackMap({"Kick", "LdVo", "BkVo"}, 0);
    }

    // The tracks of the list, each as JSON.
    void serve(const std::string& tracks) {
        service.answers[trackListCommand] = [tracks](const service::Request&) {
            return service::reply("{\"track_list\":[" + tracks + "]}");
        };
    }

    void refuse(std::uint64_t command) {
        service.answers[command] = [](const service::Request&) { return service::failure("{\"errors\":[]}"); };
    }
    void refuse(std::uint64_t command, int number) {
        const std::string error = R"({"errors":[{"command_error_type":)" + std::to_string(number) + "}]}";
        service.answers[command] = [error](const service::Request&) { return service::failure(error); };
    }

    void refresh() {
        bench.parts().metadata.refreshFullNames();
        world.runtime.runUntilIdle();
    }

    // The arguments of the requests with that command.
    // The commands that the service got since the last look, without registering and lists.
    Lines takeSetters() {
        Lines setters;
        for (const service::Request& request : service.requests)
            if (request.command != trackListCommand && request.command != registerCommand)
                setters.push_back(std::to_string(request.command) + " " + request.json);
        service.requests.clear();
        return setters;
    }

    Lines argumentsOf(std::uint64_t command) const {
        Lines arguments;
        for (const service::Request& request : service.requests)
            if (request.command == command) arguments.push_back(request.json);
        return arguments;
    }

    static constexpr const char* threeTracks =
        R"({"name":"Kick Drum","color":"#ff102030"},{"name":"Lead Vocals","color":""},{"name":"Backing Vocals"})";

    ModelWorld world;
    ModelBench bench;
    service::EnvelopeService service{bench.streams};
    PublishedState& published = bench.state().published;
};

// The same beside a phone in control.
class WishTest : public MetadataTest {
protected:
    explicit WishTest(bool japanese = false) : MetadataTest(japanese) {
        bench.start();
        phone = bench.phone("192.168.1.7");
        phone->send(remote::vpotDeltaCommand(*Strip::of(0), 0));
        bench.run(1ms);
        owner = bench.parts().endpoint.ownership().value();
    }

    // Tells the phone what is known of the tracks.
    void tell() {
        bench.parts().table.sendChangedRows();
        bench.parts().mirror.send(occasion::bankView);
        bench.run(25ms); // 2,000 rows a second
        bench.lines.clear();
    }

    // Of a wish whose datagram arrives now.
    Asked origin() const { return {.owner = owner, .at = world.runtime.now()}; }

    std::unique_ptr<Phone> phone;
    Ownership owner;
};

class JapaneseMetadataTest : public MetadataTest {
protected:
    JapaneseMetadataTest() : MetadataTest(true) {}
};

} // namespace lumbrine
