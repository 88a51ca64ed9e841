#include "app/receiver_ending.h"

namespace lumbrine {

namespace {

constexpr Duration lookInterval = seconds(0.002);

// Running jobs hold the model until they notice that their sleep was interrupted.
void stopWhenGone(MainLoop& loop, const std::weak_ptr<const void>& model) {
    if (model.expired()) {
        loop.stop();
    } else {
        loop.postAfter(lookInterval, [&loop, model] { stopWhenGone(loop, model); });
    }
}

} // namespace

void endReceiver(MainLoop& loop, RealRuntime& runtime, StreamSockets& streams, std::shared_ptr<ReceiverModel>& model) {
    if (!model) return;
    // While the ports are there, and before jobs end early: whatever they press from now on is not sent.
    model->letGo();
    // First both shutdowns, so that no job holds the model in a sleep or in a call to the scripting service.
    runtime.shutDown();
    streams.shutDown();
    const std::weak_ptr<const void> last = model->lifetime();
    model.reset();
    stopWhenGone(loop, last);
}

} // namespace lumbrine
