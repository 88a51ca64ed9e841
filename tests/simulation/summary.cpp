#include "tests/simulation/summary.h"

#include "tests/simulation/job_checkers.h"
#include "tests/simulation/owner_oracle.h"

#include <algorithm>
#include <cstdio>

namespace lumbrine::simulation {

namespace {

std::string rounded(double number, int digits) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%.*f", digits, number);
    return text.data();
}

} // namespace

void Summary::Worst::consider(Duration other, std::uint64_t otherSeed) {
    if (other <= length) return;
    length = other;
    seed = otherSeed;
}

std::string Summary::Worst::text() const {
    return rounded(inSeconds(length), 1) + " s (seed " + std::to_string(seed) + ")";
}

void Summary::add(std::uint64_t seed, const Evidence& evidence) {
    ++sessions;
    virtualTime += evidence.virtualTime;
    if (evidence.recovery.mapWasStale) ++staleMaps;
    recovery.consider(evidence.recovery.took, seed);
    const Requests requests = requestsIn(acceptedOf(evidence.datagrams));
    for (const JobRun& run : evidence.jobs.runs) {
        const auto job = static_cast<std::size_t>(run.job);
        jobs[job].consider(lengthOf(run, requests), seed);
        ++runs[job];
    }
}

std::string Summary::text(Duration spent) const {
    const double virtualSeconds = inSeconds(virtualTime);
    std::string lines = std::to_string(sessions) + " sessions, " + rounded(virtualSeconds, 0) + " s of studio time, " +
                        rounded(virtualSeconds / std::max(inSeconds(spent), 0.001), 0) +
                        " times real time on one core\n";
    lines += "worst recovery " + recovery.text() + "; " + std::to_string(staleMaps) +
             " sessions needed a scan that the client asked for\n";
    for (const Job job : {Job::scan, Job::seek, Job::walk, Job::tap}) {
        const auto index = static_cast<std::size_t>(job);
        lines += "longest " + nameOf(job) + " of " + std::to_string(runs[index]) + ": " + jobs[index].text() + "\n";
    }
    return lines;
}

} // namespace lumbrine::simulation
