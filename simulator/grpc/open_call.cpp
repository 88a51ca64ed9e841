#include "simulator/grpc/open_call.h"

#include <utility>

namespace lumbrine {

void OpenCall::end(const std::optional<ScriptingReply>& reply) {
    if (!ended.exchange(true)) callback(reply);
}

std::shared_ptr<OpenCall> OpenCalls::add(OpenCall::End end) {
    auto call = std::make_shared<OpenCall>(std::move(end));
    bool tooLate = false;
    {
        Lock lock(mutex);
        std::erase_if(calls, [](const std::weak_ptr<OpenCall>& held) { return held.expired(); });
        tooLate = ending;
        calls.push_back(call);
    }
    if (tooLate) call->end(std::nullopt);
    return call;
}

void OpenCalls::endAll() {
    std::vector<std::weak_ptr<OpenCall>> left;
    {
        Lock lock(mutex);
        ending = true;
        left = std::exchange(calls, {});
    }
    for (const std::weak_ptr<OpenCall>& held : left)
        if (const std::shared_ptr<OpenCall> call = held.lock()) call->end(std::nullopt);
}

} // namespace lumbrine
