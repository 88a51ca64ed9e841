#include "tools/simulator_place.h"

#include "platform/macos/coremidi_connections.h"
#include "platform/macos/dispatch_main_loop.h"
#include "tools/macos/screen_windows.h"

#import <AppKit/AppKit.h>

namespace lumbrine {

namespace {

constexpr Duration betweenLooks = seconds(0.1); // at what the screen shows

// AppKit's loop looks whether it has been stopped only after an event.
void endEventLoop() {
    [NSApp stop:nil];
    NSEvent* const last = [NSEvent otherEventWithType:NSEventTypeApplicationDefined
                                             location:NSZeroPoint
                                        modifierFlags:0
                                            timestamp:0
                                         windowNumber:0
                                              context:nil
                                              subtype:0
                                                data1:0
                                                data2:0];
    [NSApp postEvent:last atStart:YES];
}

class Shown {
public:
    Shown(Runtime& runtime, SimulatedProTools& proTools)
        : windows(proTools), looks(runtime.repeatOnMain(betweenLooks, [this] { windows.look(); })) {
        windows.look();
    }

private:
    ScreenWindows windows;
    const std::unique_ptr<RepeatingTimer> looks;
};

class MacPlace final : public SimulatorPlace {
public:
    MainLoop& loop() override { return mainLoop; }
    void run() override { [NSApplication.sharedApplication run]; }
    std::unique_ptr<MIDIConnections> midi(Runtime& runtime) override {
        return std::make_unique<CoreMIDIConnections>(runtime);
    }
    std::shared_ptr<void> show(Runtime& runtime, SimulatedProTools& proTools) override {
        @autoreleasepool {
            // Not before: it starts threads, and the program blocks its signals first.
            [NSApplication.sharedApplication setActivationPolicy:NSApplicationActivationPolicyRegular];
            return std::make_shared<Shown>(runtime, proTools);
        }
    }

private:
    DispatchMainLoop mainLoop{endEventLoop};
};

} // namespace

std::unique_ptr<SimulatorPlace> SimulatorPlace::make() {
    return std::make_unique<MacPlace>();
}

} // namespace lumbrine
