// The same ports on the threads of real time.
#include "platform/posix/real_runtime.h"
#include "platform/posix/run_loop.h"
#include "platform/virtual/memory_midi.h"

namespace lumbrine {
namespace {

TEST(MemoryMIDIInRealTime, CarriesBytesBothWaysInOrder) {
    RunLoop loop;
    RealRuntime runtime(loop);
    MemoryMIDI midi(runtime, std::chrono::microseconds(10));
    MIDIClientRef client = 0;
    MIDIEndpointRef source = 0;
    MIDIEndpointRef destination = 0;
    midi.createClient("Lumbrine", client);
    midi.createSource(client, "Lumbrine", source);
    midi.createDestination(client, "Lumbrine", [&](ByteView packet) { midi.received(source, packet); }, destination);
    Bytes echoed;
    const auto connection = midi.connect("Lumbrine", [&](ByteView data) {
        echoed.push_back(data[0]);
        if (echoed.size() == 100) loop.stop();
    });
    for (std::uint8_t i = 0; i < 100; ++i)
        connection->send(Bytes{i});
    loop.run();
    for (std::uint8_t i = 0; i < 100; ++i)
        EXPECT_EQ(echoed[i], i);
}

} // namespace
} // namespace lumbrine
