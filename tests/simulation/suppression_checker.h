// While a job moves the surfaces the client is not shown what passes by: no faders, selects, pans, automation modes and
// meters go out, and the switches only as part of everything.
#pragma once

#include "base/bytes.h"
#include "platform/api/time.h"

#include <optional>
#include <string>
#include <vector>

namespace lumbrine::simulation {

class SuppressionChecker {
public:
    // The next message of state to a client, and whether a job had the surfaces then.
    void sent(TimePoint at, bool jobRuns, ByteView message);

    // What was found wrong, when nothing more comes.
    std::vector<std::string> violations();

private:
    void complain(const std::string& what, TimePoint at);

    std::vector<std::string> found;
    std::optional<TimePoint> doubted; // switches that names and the pan side have to follow, as they do in everything
    TimePoint lastAt;
    bool afterBankView = false; // at this moment; what a seek sends in the end goes on with names and switches
};

} // namespace lumbrine::simulation
