// Decides whether this program may read other programs' user interfaces, from the system's answer and from the results
// of reads.
#pragma once

#include <atomic>

namespace lumbrine {

// The system's answer may be stale: after a program that the user has allowed is replaced by a newer version, macOS may
// still report trust but refuse every read. So a refused read counts as "not trusted" until a read works, the system's
// answer becomes no, or the user has been sent to the settings and may have repaired the permission there.
//
// Any thread.
class ScreenTrust {
public:
    // The outcome of one read or action.
    enum class Outcome { allowed, refused };
    void attempted(Outcome outcome) { refused = outcome == Outcome::refused; }

    // Returns whether the program is trusted, given the system's answer.
    bool judge(bool systemSaysYes);

    // True while reads are refused although the system reports trust. Its prompt would not appear then.
    bool isStale() const { return refused; }

    // The user has been sent to the settings, so the next read decides.
    void userWasAsked() { refused = false; }

private:
    std::atomic<bool> refused{false};
};

} // namespace lumbrine
