// Ends a program with a receiver: in order, without waiting for its time-outs, and in time whatever stands still.
#pragma once

#include "model/receiver_model.h"
#include "platform/api/main_loop.h"
#include "platform/api/process_end.h"
#include "platform/api/stream_socket.h"
#include "platform/posix/real_runtime.h"

#include <functional>
#include <memory>

namespace lumbrine {

// The longest time from the wish to end a program to the end of its process. The rest of a second is the system's.
inline constexpr Duration endingTime = seconds(0.8);

// What a program consists of beside its receiver, as far as its end goes.
struct EndingProgram {
    Runtime& runtime;
    ProcessEnd& process;
    StreamSockets& streams;
    std::function<void()> shutDownRuntime;
    std::function<void()> ended; // called on the main thread when no job holds the model any more
};

// Sets the process its deadline of `endingTime`, lets go of what is down in Pro Tools, wakes all sleeps and all waits
// on sockets, and releases the model. `model` is null afterwards. Call it on the main thread while the loop runs. A
// second call does nothing.
//
// The main thread may be busy when a signal arrives: who gets the signal sets the deadline before posting this call.
void endReceiver(EndingProgram program, std::shared_ptr<ReceiverModel>& model);

// The same in real time; then stops the loop.
void endReceiver(MainLoop& loop, RealRuntime& runtime, ProcessEnd& process, StreamSockets& streams,
                 std::shared_ptr<ReceiverModel>& model);

} // namespace lumbrine
