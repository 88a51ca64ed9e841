#include "tools/simulator_place.h"

#include "platform/linux/midi_backend.h"
#include "platform/posix/run_loop.h"

namespace lumbrine {

namespace {

class LinuxPlace final : public SimulatorPlace {
public:
    MainLoop& loop() override { return runLoop; }
    void run() override { runLoop.run(); }
    std::unique_ptr<MIDIConnections> midi(Runtime& runtime) override { return backend.connections(runtime); }
    std::shared_ptr<void> show(Runtime&, SimulatedProTools&) override { return nullptr; }

private:
    const MIDIBackend backend;
    RunLoop runLoop;
};

} // namespace

std::unique_ptr<SimulatorPlace> SimulatorPlace::make() {
    return std::make_unique<LinuxPlace>();
}

} // namespace lumbrine
