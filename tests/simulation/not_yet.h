// What the receiver does not keep yet: checkers and troubles switched off, each by its name, with what it finds.
// Whoever mends the receiver takes the entry out. `simulation_tests --with NAME` switches one on, `--with all` all.
#pragma once

#include <array>
#include <set>
#include <string>
#include <string_view>

namespace lumbrine::simulation {

struct NotYet {
    std::string_view name;  // as `--with` takes it: small letters and hyphens
    std::string_view finds; // one sentence
};

inline constexpr auto notYet = std::to_array<NotYet>({
    {"main-thread-stalls",
     "Pings and datagrams are stamped when the main thread gets round to them, so that Pro Tools and "
     "the client count as gone after 2 s and 5 s of its own absence."},
    {"second-receiver", "Two receivers answer each other's refusals and take each other for clients, for as long as no "
                        "datagram gets lost."},
    {"false-receiver", "A datagram that only a receiver sends makes its sender the client or is answered, also when it "
                       "comes from the receiver's own address."},
});

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
