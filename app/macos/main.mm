// Lumbrine: the receiver as a menu-bar application of the Mac.
#include "app/flight_recorder.h"
#include "app/key_keeper.h"
#include "app/login_item.h"
#include "app/macos/about_box.h"
#include "app/macos/application.h"
#include "app/macos/connect_box.h"
#include "app/macos/controls.h"
#include "app/macos/draw_pace.h"
#include "app/macos/promptness.h"
#include "app/macos/receiver_window.h"
#include "app/macos/status_icon.h"
#include "app/receiver_app.h"
#include "app/receiver_ending.h"
#include "app/standard_output.h"
#include "model/receiver_model.h"
#include "platform/macos/accessibility_ax.h"
#include "platform/macos/announcement_failure.h"
#include "platform/macos/common_crypto_secrets.h"
#include "platform/macos/coremidi_services.h"
#include "platform/macos/dispatch_main_loop.h"
#include "platform/macos/foundation_json.h"
#include "platform/macos/latency_critical_activity.h"
#include "platform/macos/mac_system_info.h"
#include "platform/macos/main_app_login_service.h"
#include "platform/macos/net_service_advertiser.h"
#include "platform/macos/power_observer.h"
#include "platform/macos/system_log.h"
#include "platform/macos/wake_handling.h"
#include "platform/posix/network_watch.h"
#include "platform/posix/posix_datagram_sockets.h"
#include "platform/posix/posix_process_end.h"
#include "platform/posix/posix_stream_sockets.h"
#include "platform/posix/primary_ipv4.h"
#include "platform/posix/real_runtime.h"
#include "platform/posix/termination_signals.h"

#import <AppKit/AppKit.h>

#include <memory>
#include <optional>

namespace lumbrine {
namespace {

void endEventLoop() {
    [NSApp terminate:nil];
}

// While Pro Tools or a client is there: the system delays nothing, and timers are exact.
class PromptTime {
public:
    explicit PromptTime(DispatchMainLoop& mainLoop) : loop(mainLoop) { loop.makeTimersExact(true); }
    ~PromptTime() { loop.makeTimersExact(false); }
    PromptTime(const PromptTime&) = delete;
    PromptTime& operator=(const PromptTime&) = delete;

private:
    const LatencyCriticalActivity activity;
    DispatchMainLoop& loop;
};

std::string timeOfDay() {
    static NSDateFormatter* const formatter = [] {
        NSDateFormatter* const made = [[NSDateFormatter alloc] init];
        made.locale = [NSLocale localeWithLocaleIdentifier:@"en_US_POSIX"];
        made.dateFormat = @"HH:mm:ss";
        return made;
    }();
    return [formatter stringFromDate:[NSDate date]].UTF8String;
}

std::string version() {
    NSString* const text = [NSBundle.mainBundle objectForInfoDictionaryKey:@"CFBundleShortVersionString"];
    return text == nil ? std::string() : std::string(text.UTF8String);
}

std::string systemName() {
    return std::string("macOS ") + NSProcessInfo.processInfo.operatingSystemVersionString.UTF8String;
}

std::string programName() {
    return "Lumbrine " + version() + ", " + systemName();
}

ReceiverApp::Surroundings surroundings(Runtime& runtime) {
    return {.runtime = runtime,
            .system = HostSystem::mac,
            .version = version(),
            .systemName = systemName(),
            .addresses = [] { return reachableIPv4(listIPv4Interfaces()); },
            .timeOfDay = timeOfDay};
}

// All back ends of the receiver on a Mac.
struct Mac {
    DispatchMainLoop loop{endEventLoop};
    RealRuntime runtime{loop};
    MacSystemInfo system;
    const Bilingual text{prefersJapanese(system.preferredLanguages())};
    LineOutput output = standardOutput(text);
    FlightRecorder recorder{runtime, blackboxSetting(system.environment("LUMBRINE_BLACKBOX"), system.stateFolder()),
                            programName(), text};
    CoreMIDIServices midi{runtime};
    PosixDatagramSockets sockets;
    PosixStreamSockets streams;
    NetServiceAdvertiser advertiser{runtime};
    FoundationJSON json{text};
    AccessibilityAX accessibility;
    CommonCryptoSecrets secrets;
    MainAppLoginService login{text};
};

// Everything in the program. It lives until the process ends: `terminate:` exits without returning to `main`.
class Application {
public:
    explicit Application(ProcessEnd& processEnd) : process(processEnd) {
        mac.advertiser.onRefused = [this](int code) {
            app.tell(mac.text("✗ Bonjour failed: ", "✗ Bonjour 失敗: ") + announcementFailureText(code, mac.text));
        };
        app.connect({.openWindow = [this] { openWindow(); },
                     .refresh = [this] { pace.changed(); },
                     .quit = [this] { mac.loop.stop(); },
                     .showAbout = [this] { showAbout(); },
                     .showConnect = [this] { showConnect(); }});
        mac.recorder.keepUp(model);
        if (const auto folder = mac.system.stateFolder())
            keyKeeper.emplace(mac.runtime, *folder, mac.secrets, model, mac.text);
        delegate.launched = [this] { openWindow(); };
        delegate.reopened = [this] { openWindow(); };
        delegate.windowChanged = [this] { pace.changed(); };
        delegate.ending = [this] {
            process.within(endingTime);
            model->letGo();
            mac.recorder.end();
            mac.output.flush();
        };
    }

    LumbrineApplicationDelegate* const delegate = [[LumbrineApplicationDelegate alloc] init];

    NSMenu* keys() const { return keyMenu(mac.text); }

private:
    struct Shell {
        Shell(ReceiverApp& app, LumbrineActionTarget* target) : window(app, target), icon(app, target) {}
        ReceiverWindow window;
        StatusIcon icon;
    };

    void openWindow() {
        if (!shell) {
            shell = std::make_unique<Shell>(app, target);
            shell->window.window().delegate = delegate;
        }
        shell->window.show();
        app.windowAppeared();
    }

    void showAbout() {
        if (shell) showAboutBox(app.about(), shell->window.window());
    }

    void showConnect() {
        if (shell) showConnectBox(app.connection(), shell->window.window());
    }

    void draw() {
        promptness.follow(model->published());
        if (!shell) return;
        shell->window.draw();
        shell->icon.draw();
    }

    ProcessEnd& process;
    Mac mac;
    const std::function<void(const std::string&)> print = [this](const std::string& line) {
        mac.output.print(line);
        writeToSystemLog(line);
    };
    LoginItem loginItem{mac.login, mac.text, print};
    const std::shared_ptr<ReceiverModel> model = ReceiverModel::create(mac.recorder.recorded({mac.runtime,
                                                                                              mac.midi,
                                                                                              mac.sockets,
                                                                                              mac.advertiser,
                                                                                              mac.system,
                                                                                              mac.streams,
                                                                                              mac.json,
                                                                                              mac.accessibility,
                                                                                              {},
                                                                                              &mac.secrets}),
                                                                       mac.text, mac.recorder.recorded(print));
    std::optional<KeyKeeper> keyKeeper;
    ReceiverApp app{model, loginItem, mac.text, surroundings(mac.runtime)};
    Promptness promptness{[this] { return std::make_shared<PromptTime>(mac.loop); }};
    DrawPace pace{mac.runtime, [this] { draw(); }};
    WakeHandling wake{
        mac.runtime,
        {.readAddress = [this] { return model->readAddress(); }, .announceAgain = [this] { mac.advertiser.renew(); }}};
    const NetworkWatch network{mac.runtime, [this] {
                                   if (model->readAddress()) mac.advertiser.renew();
                               }};
    const PowerObserver power{[this] { wake.willSleep(); }, [this] { wake.didWake(); }};
    LumbrineActionTarget* const target =
        [[LumbrineActionTarget alloc] initWithPerform:[this](ScreenAction action) { app.perform(action); }];
    std::unique_ptr<Shell> shell;
};

} // namespace
} // namespace lumbrine

int main() {
    // As Quit does: the program lets go of what is down in Pro Tools. Never destroyed, because `terminate:` ends the
    // process.
    lumbrine::PosixProcessEnd process;
    const lumbrine::TerminationSignals signals([&process] {
        process.within(lumbrine::endingTime);
        dispatch_async(dispatch_get_main_queue(), ^{
          lumbrine::endEventLoop();
        });
    });
    @autoreleasepool {
        NSApplication* const application = NSApplication.sharedApplication;
        const auto receiver = std::make_unique<lumbrine::Application>(process);
        application.delegate = receiver->delegate;
        application.mainMenu = receiver->keys();
        [application run];
    }
    return 0;
}
