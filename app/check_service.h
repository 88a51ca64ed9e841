// Lets other programs of the user ask a running receiver how it is doing (lumbrine-headless --check).
#pragma once

#include "app/check_answer.h"
#include "platform/api/main_loop.h"
#include "platform/linux/local_questions.h"

#include <functional>

namespace lumbrine {

class CheckService {
public:
    // `state` is called on the main thread; its result is absent when there is no receiver any more. The loop must not
    // run any more when this object goes.
    CheckService(MainLoop& loop, std::uint16_t port, std::function<std::optional<ReceiverNow>()> state)
        : questions(checkName(port),
                    [&loop, state = std::move(state)](const std::string& question, const LocalQuestions::Reply& reply) {
                        loop.post([state, question, reply] {
                            if (const auto now = state()) reply(answerTo(question, *now, HostSystem::linuxDesktop));
                        });
                    }) {}

private:
    const LocalQuestions questions;
};

} // namespace lumbrine
