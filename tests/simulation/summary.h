// What many sessions amount to: how long things took at the worst, and in which session that was.
#pragma once

#include "tests/simulation/evidence.h"
#include "tests/simulation/requests.h"

#include <array>
#include <cstdint>
#include <string>

namespace lumbrine::simulation {

class Summary {
public:
    void add(std::uint64_t seed, const Evidence& evidence);

    // Several lines. `spent`: processor time.
    std::string text(Duration spent) const;

private:
    struct Worst {
        Duration length = Duration::zero();
        std::uint64_t seed = 0;

        void consider(Duration other, std::uint64_t otherSeed);
        std::string text() const; // "12.3 s (seed 7)"
    };

    std::uint64_t sessions = 0;
    std::uint64_t staleMaps = 0;
    Duration virtualTime = Duration::zero();
    Worst recovery;
    std::array<Worst, jobCount> jobs;
    std::array<std::uint64_t, jobCount> runs{};
};

} // namespace lumbrine::simulation
