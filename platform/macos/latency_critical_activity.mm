#include "platform/macos/latency_critical_activity.h"

#import <Foundation/Foundation.h>

namespace lumbrine {

struct LatencyCriticalActivity::Token {
    id<NSObject> activity;
};

LatencyCriticalActivity::LatencyCriticalActivity()
    : token(std::make_unique<Token>([NSProcessInfo.processInfo
          beginActivityWithOptions:NSActivityUserInitiatedAllowingIdleSystemSleep | NSActivityLatencyCritical
                            reason:@"faders are being moved"])) {}

LatencyCriticalActivity::~LatencyCriticalActivity() {
    [NSProcessInfo.processInfo endActivity:token->activity];
}

} // namespace lumbrine
