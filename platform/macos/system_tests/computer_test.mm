// What the other back ends tell about the Mac that runs the test.
#include "platform/macos/dispatch_main_loop.h"
#include "platform/macos/mac_system_info.h"
#include "platform/macos/main_app_login_service.h"
#include "platform/macos/net_service_advertiser.h"
#include "platform/macos/system_tests/main_queue.h"
#include "platform/posix/network_watch.h"
#include "platform/posix/real_runtime.h"

#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

// Collects the names of the services that it hears of.
@interface LumbrineServiceListener : NSObject <NSNetServiceBrowserDelegate>
@property(readonly) NSMutableSet<NSString*>* names;
@end

@implementation LumbrineServiceListener
- (instancetype)init {
    self = [super init];
    if (self != nil) _names = [NSMutableSet set];
    return self;
}
- (void)netServiceBrowser:(NSNetServiceBrowser*)browser
           didFindService:(NSNetService*)service
               moreComing:(BOOL)moreComing {
    [self.names addObject:service.name];
}
@end

namespace lumbrine {
namespace {

TEST(ComputerTest, HasANameLanguagesAndAnEnvironment) {
    const MacSystemInfo system;
    EXPECT_TRUE(system.computerName());
    EXPECT_FALSE(system.preferredLanguages().empty());
    EXPECT_TRUE(system.environment("PATH"));
    EXPECT_FALSE(system.environment("LUMBRINE_NOBODY_SETS_THIS"));
}

TEST(ComputerTest, SaysWhetherATestProgramStartsAtLogin) {
    MainAppLoginService login(Bilingual(false));
    EXPECT_FALSE(login.isEnabled());
}

TEST(ComputerTest, FindsItsOwnAnnouncement) {
    DispatchMainLoop loop([] {});
    RealRuntime runtime(loop);
    NetServiceAdvertiser advertiser(runtime);
    int refused = 0;
    advertiser.onRefused = [&refused](int code) { refused = code; };
    NSString* const name = [NSString stringWithFormat:@"Lumbrine test %d", NSProcessInfo.processInfo.processIdentifier];
    const auto announced =
        advertiser.publish({.domain = "local.", .type = "_lumbrine._udp.", .name = name.UTF8String, .port = 52799});
    LumbrineServiceListener* const listener = [[LumbrineServiceListener alloc] init];
    NSNetServiceBrowser* const browser = [[NSNetServiceBrowser alloc] init];
    browser.delegate = listener;
    [browser searchForServicesOfType:@"_lumbrine._udp." inDomain:@"local."];
    EXPECT_TRUE(runMainQueueUntil([&] { return [listener.names containsObject:name]; })) << "refused: " << refused;
    [browser stop];
    browser.delegate = nil;
    runtime.shutDown();
}

TEST(ComputerTest, WatchesItsNetworkWithoutBeingToldOfNothing) {
    DispatchMainLoop loop([] {});
    RealRuntime runtime(loop);
    {
        const NetworkWatch watch(runtime, [] {});
    }
    runtime.shutDown();
}

} // namespace
} // namespace lumbrine
