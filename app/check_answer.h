// What a running receiver answers to the question how it is doing.
#pragma once

#include "app/diagnosis.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace lumbrine {

struct CheckAnswer {
    bool anyWrong = false;
    std::string announcedAs; // on the network; empty while it is not
    std::string list;        // for a terminal, in the language of the question

    bool operator==(const CheckAnswer&) const = default;
};

// The name at which the receiver on this port is asked.
std::string checkName(std::uint16_t port);

// The question, in the language of the user who asks; its answer; and the answer as it is read at the other end: absent
// when it is none.
std::string checkQuestion(const Bilingual& text);
struct ReceiverNow {
    const PublishedState& published;
    std::size_t outputBacklog = 0; // of LineOutput
};
std::string answerTo(std::string_view question, const ReceiverNow& now, HostSystem system);
std::optional<CheckAnswer> readAnswer(const std::string& answer);

} // namespace lumbrine
