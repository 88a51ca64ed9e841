// Whether the screens of other programs may be read: what the system says, and what reading really comes to.
#pragma once

#include <atomic>

namespace lumbrine {

// The system's answer may be stale. Once the user has allowed a program and that program has been replaced by a newer
// one, the system may go on saying yes and refuse every read. So a refused read counts as a no, until a read works, the
// system changes its answer, or the user has been sent to the settings and may have put it right there.
//
// Any thread.
class ScreenTrust {
public:
    // Of one read or action.
    enum class Outcome { allowed, refused };
    void attempted(Outcome outcome) { refused = outcome == Outcome::refused; }

    // Takes the system's answer and gives the one that counts.
    bool judge(bool systemSaysYes);

    // True while the system says yes and reads are refused: then the system would show the user nothing.
    bool isStale() const { return refused; }

    // The user has been sent to the settings: the next read decides anew.
    void userWasAsked() { refused = false; }

private:
    std::atomic<bool> refused{false};
};

} // namespace lumbrine
