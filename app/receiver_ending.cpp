#include "app/receiver_ending.h"

namespace lumbrine {

namespace {

constexpr Duration lookInterval = seconds(0.002);

// Jobs that are under way keep the model for the moment that they need to find their sleeps cut short.
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
    runtime.shutDown();
    streams.shutDown();
    const std::weak_ptr<const void> last = model->lifetime();
    model.reset();
    stopWhenGone(loop, last);
}

} // namespace lumbrine
