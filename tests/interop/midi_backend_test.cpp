// Which MIDI system the programs get, with and without a JACK server.
#include "platform/linux/midi_backend.h"
#include "platform/linux/rtmidi_services.h"
#include "platform/posix/real_runtime.h"
#include "platform/posix/run_loop.h"
#include "tests/interop/private_jack.h"

#include <cerrno>

namespace lumbrine::interop {
namespace {

class MIDIBackendTest : public testing::Test {
protected:
    std::unique_ptr<MIDIServices> foundServices() {
        auto services = backend.services(runtime, [this] { loop.stop(); });
        loop.run();
        return services;
    }

    MIDIBackend backend;
    PrivateJack jack;
    RunLoop loop;
    RealRuntime runtime{loop};
};

TEST_F(MIDIBackendTest, HasThePortsInJACKWhereAServerAnswers) {
    const auto services = foundServices();
    MIDIClientRef client = 0;
    MIDIEndpointRef source = 0;
    ASSERT_EQ(services->createClient("Lumbrine", client), 0);
    ASSERT_EQ(services->createSource(client, "Lumbrine", source), 0);
    EXPECT_TRUE(jack.hasPort("Lumbrine:Lumbrine"));
}

TEST_F(MIDIBackendTest, ConnectsInJACKWhereAServerAnswers) {
    const auto connections = backend.connections(runtime);
    const auto connection = connections->connect("Lumbrine", [](ByteView) {});
    EXPECT_NE(connection, nullptr);
    EXPECT_TRUE(jack.hasPort("Lumbrine host:Lumbrine in"));
}

TEST_F(MIDIBackendTest, FailsAtTheFirstCreationWhereThereIsNoSystem) {
    if (RtMidiServices::alsaAnswers()) GTEST_SKIP() << "this computer has ALSA's sequencer";
    jack.stop();
    const auto services = foundServices();
    MIDIClientRef client = 7;
    EXPECT_EQ(services->createClient("Lumbrine", client), -ENODEV);
    EXPECT_EQ(client, 7U);
}

TEST_F(MIDIBackendTest, ConnectsToNothingWhereThereIsNoSystem) {
    if (RtMidiServices::alsaAnswers()) GTEST_SKIP() << "this computer has ALSA's sequencer";
    jack.stop();
    EXPECT_EQ(backend.connections(runtime)->connect("Lumbrine", [](ByteView) {}), nullptr);
}

TEST_F(MIDIBackendTest, KeepsPipeWireFromRewritingMessagesUnlessTheUserHasSetItsProperties) {
    ::unsetenv("PIPEWIRE_PROPS");
    const MIDIBackend first;
    EXPECT_STREQ(::getenv("PIPEWIRE_PROPS"), "{ jack.fix-midi-events = false }");
    ::setenv("PIPEWIRE_PROPS", "{ mine }", 1);
    const MIDIBackend second;
    EXPECT_STREQ(::getenv("PIPEWIRE_PROPS"), "{ mine }");
}

} // namespace
} // namespace lumbrine::interop
