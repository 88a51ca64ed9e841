// What the receiver does not keep yet: checkers and troubles switched off, each by its name, with what it finds.
// Whoever mends the receiver takes the entry out. `simulation_tests --with NAME` switches one on, `--with all` all.
#pragma once

#include <initializer_list>
#include <set>
#include <string>
#include <string_view>

namespace lumbrine::simulation {

struct NotYet {
    std::string_view name;  // as `--with` takes it: small letters and hyphens
    std::string_view finds; // one sentence
};

inline constexpr std::initializer_list<NotYet> notYet = {};

// Which of them are on all the same.
class Switches {
public:
    // False when there is no entry of that name. "all": every entry.
    bool switchOn(std::string_view name);

    // Also true of every name without an entry.
    bool isOn(std::string_view name) const;

private:
    std::set<std::string, std::less<>> on;
};

} // namespace lumbrine::simulation
