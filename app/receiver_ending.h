// How a program with a receiver ends: in order, and at once.
#pragma once

#include "model/receiver_model.h"
#include "platform/api/main_loop.h"
#include "platform/api/stream_socket.h"
#include "platform/posix/real_runtime.h"

#include <functional>
#include <memory>

namespace lumbrine {

// Wakes everything that sleeps or waits at a socket, lets go of the model, and stops the loop as soon as no job holds
// the model any more. `model` is empty afterwards. On the main thread, while the loop runs; a second call does nothing.
void endReceiver(MainLoop& loop, RealRuntime& runtime, StreamSockets& streams, std::shared_ptr<ReceiverModel>& model);

} // namespace lumbrine
