// gRPC calls that wait for their answers.
#pragma once

#include "platform/api/runtime.h"
#include "simulator/scripting_message.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace lumbrine {

// One call. It ends exactly once: with a reply, or without one when the server ends or the last owner releases it. Any
// thread.
class OpenCall {
public:
    using End = std::function<void(const std::optional<ScriptingReply>&)>;

    explicit OpenCall(End callback) : callback(std::move(callback)) {}
    ~OpenCall() { end(std::nullopt); }
    OpenCall(const OpenCall&) = delete;
    OpenCall& operator=(const OpenCall&) = delete;

    void end(const std::optional<ScriptingReply>& reply);

private:
    const End callback;
    std::atomic<bool> ended = false;
};

// All open calls. Any thread.
class OpenCalls {
public:
    explicit OpenCalls(Runtime& runtime) : mutex(runtime) {}

    // Adds a call. The code that will answer it must hold the result. While the server is ending, the call has already
    // ended.
    std::shared_ptr<OpenCall> add(OpenCall::End end) LUMBRINE_EXCLUDES(mutex);

    // Ends all calls, and from now on each new one at once.
    void endAll() LUMBRINE_EXCLUDES(mutex);

private:
    Mutex mutex;
    std::vector<std::weak_ptr<OpenCall>> calls LUMBRINE_GUARDED_BY(mutex);
    bool ending LUMBRINE_GUARDED_BY(mutex) = false;
};

} // namespace lumbrine
