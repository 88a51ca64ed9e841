// Ends a program with a receiver in order and without waiting for its time-outs.
#pragma once

#include "model/receiver_model.h"
#include "platform/api/main_loop.h"
#include "platform/api/stream_socket.h"
#include "platform/posix/real_runtime.h"

#include <functional>
#include <memory>

namespace lumbrine {

// Lets go of what is down in Pro Tools, wakes all sleeps and all waits on sockets, releases the model, and stops the
// loop when no job holds the model any more. `model` is null afterwards. Call it on the main thread while the loop
// runs. A second call does nothing.
void endReceiver(MainLoop& loop, RealRuntime& runtime, StreamSockets& streams, std::shared_ptr<ReceiverModel>& model);

} // namespace lumbrine
