// Lumbrine: the receiver as an application of the Mac's menu bar.
#include "base/bilingual.h"
#include "model/receiver_model.h"
#include "platform/macos/coremidi_services.h"
#include "platform/macos/dispatch_main_loop.h"
#include "platform/macos/foundation_json.h"
#include "platform/macos/mac_system_info.h"
#include "platform/macos/net_service_advertiser.h"
#include "platform/posix/posix_datagram_sockets.h"
#include "platform/posix/posix_stream_sockets.h"
#include "platform/posix/real_runtime.h"

#import <AppKit/AppKit.h>

int main() {
    using namespace lumbrine;
    DispatchMainLoop loop;
    RealRuntime runtime(loop);
    MacSystemInfo system;
    CoreMIDIServices midi;
    PosixDatagramSockets sockets;
    PosixStreamSockets streams;
    NetServiceAdvertiser advertiser(runtime);
    const Bilingual text(prefersJapanese(system.preferredLanguages()));
    FoundationJSON json(text);
    auto model = ReceiverModel::create({runtime, midi, sockets, advertiser, system, streams, json}, text);
    model->start();
    [NSApplication.sharedApplication run];
    return 0;
}
