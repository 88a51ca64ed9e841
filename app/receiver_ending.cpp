#include "app/receiver_ending.h"

#include <utility>

namespace lumbrine {

namespace {

constexpr Duration lookInterval = seconds(0.002);

// Running jobs hold the model until they notice that their sleep was interrupted.
void endWhenGone(Runtime& runtime, const std::weak_ptr<const void>& model, const std::function<void()>& ended) {
    if (model.expired()) {
        ended();
    } else {
        runtime.postMainAfter(lookInterval, [&runtime, model, ended] { endWhenGone(runtime, model, ended); });
    }
}

} // namespace

void endReceiver(EndingProgram program, std::shared_ptr<ReceiverModel>& model) {
    if (!model) return;
    program.process.within(endingTime);
    // While the ports are there, and before jobs end early: whatever they press from now on is not sent.
    model->letGo();
    // First both shutdowns, so that no job holds the model in a sleep or in a call to the scripting service.
    program.shutDownRuntime();
    program.streams.shutDown();
    const std::weak_ptr<const void> last = model->lifetime();
    model.reset();
    endWhenGone(program.runtime, last, program.ended);
}

void endReceiver(MainLoop& loop, RealRuntime& runtime, ProcessEnd& process, StreamSockets& streams,
                 std::shared_ptr<ReceiverModel>& model) {
    endReceiver({runtime, process, streams, [&runtime] { runtime.shutDown(); }, [&loop] { loop.stop(); }}, model);
}

} // namespace lumbrine
