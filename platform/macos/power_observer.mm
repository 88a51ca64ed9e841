#include "platform/macos/power_observer.h"

#import <AppKit/AppKit.h>

#include <utility>

namespace lumbrine {

struct PowerObserver::Tokens {
    id<NSObject> sleeping;
    id<NSObject> waking;
};

namespace {

id<NSObject> observe(NSNotificationName name, std::function<void()> call) {
    const auto note = ^(NSNotification*) {
      call();
    };
    return [NSWorkspace.sharedWorkspace.notificationCenter addObserverForName:name
                                                                       object:nil
                                                                        queue:NSOperationQueue.mainQueue
                                                                   usingBlock:note];
}

} // namespace

PowerObserver::PowerObserver(std::function<void()> willSleep, std::function<void()> didWake)
    : tokens(std::make_unique<Tokens>(observe(NSWorkspaceWillSleepNotification, std::move(willSleep)),
                                      observe(NSWorkspaceDidWakeNotification, std::move(didWake)))) {}

PowerObserver::~PowerObserver() {
    NSNotificationCenter* const center = NSWorkspace.sharedWorkspace.notificationCenter;
    [center removeObserver:tokens->sleeping];
    [center removeObserver:tokens->waking];
}

} // namespace lumbrine
