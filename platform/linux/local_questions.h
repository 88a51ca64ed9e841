// A question from one program of a user to another one on the same computer, and its answer.
//
// They meet at a local socket in Linux's abstract namespace. It has no file: a crashed program leaves nothing behind,
// and a service that is closed off from its user's folders can be asked, too.
#pragma once

#include "platform/api/time.h"

#include <atomic>
#include <expected>
#include <functional>
#include <string>
#include <thread>

namespace lumbrine {

// Programs of different users that use the same name do not meet.
class LocalQuestions {
public:
    static constexpr std::size_t longestQuestion = 64; // bytes
    static constexpr std::size_t longestAnswer = 32768;
    static constexpr Duration patience = seconds(0.3); // for a question, after somebody has connected

    // To be called at most once, on any thread. Never waits: nobody has to read the answer.
    using Reply = std::function<void(const std::string& answer)>;

    // `asked` is called on a thread for this purpose with each question of the same user; other users are turned away.
    // Without effect when another program has the name.
    LocalQuestions(const std::string& name, std::function<void(const std::string& question, Reply reply)> asked);

    // No call follows.
    ~LocalQuestions();

    LocalQuestions(const LocalQuestions&) = delete;
    LocalQuestions& operator=(const LocalQuestions&) = delete;

private:
    void serve();

    const std::function<void(const std::string&, Reply)> asked;
    const int listener;
    std::atomic<bool> ending{false};
    std::thread thread;
};

enum class NoAnswer {
    nobodyThere, // of this user
    silent,      // somebody is, and does not answer in time
};

// Asks the program that has the name, and waits for the answer.
std::expected<std::string, NoAnswer> askLocally(const std::string& name, const std::string& question, Duration limit);

} // namespace lumbrine
