#include "base/testing/allocation_count.h"
#include "platform/recorded/recorded_midi.h"
#include "platform/recorded/recorded_sockets.h"
#include "platform/recorded/system_address.h"
#include "platform/recorded/testing/recording_bench.h"
#include "platform/virtual/null_platform.h"
#include "platform/virtual/still_runtime.h"

namespace lumbrine {
namespace {

TEST(RecordedAllocation, IsNoneForDatagramsAndMIDI) {
    StillRuntime runtime;
    blackbox::MemoryRing ring;
    const Recorder recorder(runtime, ring.writer);
    NullDatagrams realSockets;
    RecordedSockets sockets(realSockets, recorder, systemAddress);
    NullMIDI realMIDI;
    RecordedMIDI midi(realMIDI, recorder);
    MIDIEndpointRef source = 0;
    midi.createSource(1, "Lumbrine", source);
    const Bytes move{0x01, 0x01, 0x03, 0x3F, 0xFF};
    std::array<std::uint8_t, 64> buffer{};
    PeerAddress peer;

    const int before = allocationCount();
    for (int i = 0; i < 5000; ++i) {
        sockets.receive(3, buffer, peer);
        midi.received(source, move);
        sockets.send(3, move, peer);
    }
    EXPECT_EQ(allocationCount(), before);
    EXPECT_GT(ring.writer.position(), blackbox::leastRing);
}

} // namespace
} // namespace lumbrine
