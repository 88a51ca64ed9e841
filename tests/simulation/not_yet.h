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
    {"packed-messages", "A ping that does not begin its packet is answered and not counted: Pro Tools counts as gone."},
    {"realtime-within", "A realtime byte in a message spoils it: displays, faders and LEDs are read wrongly."},
    {"cut-sysex", "A SysEx without its end makes a surface deaf while Pro Tools counts as there."},
    {"running-status", "Of controllers that share a status byte the first alone is read."},
    {"packed-displays", "Of several displays in one SysEx the first alone is read."},
    {"ping-note-off", "A ping that arrives as a note-off is never answered."},
    {"fill-at-session-open", "Names that no bank move brings again stay unknown, as those of a session of one bank."},
    {"slow-host", "A host that needs more than 0.27 s counts as unmoved: scans go wrong and begin anew without end."},
    {"older-service", "Requests are of version 5 alone: a service before 2024.10 refuses all, and no names come."},
    {"answers",
     "More than 50 refusals a second to one address, or everything twice within 250 ms, or more than 264 rows "
     "within 100 ms, in 147 of 500 sessions."},
    {"bounds", "More than 32 jobs wait in the automation queue in 6 of 500 sessions, and in many under storms."},
    {"hands", "Faders, switches and AUTO switches are down while the banks move, after another owner, after silence or "
              "after the program's end, and a new owner is let go of at the tick, in 313 of 500 sessions."},
    {"in-time", "Modes are set later than 2 s or for a former owner, and walks go on for one, in 60 of 500 sessions."},
    {"repeats", "Most often that the counts of full names differ, again within a minute, in 275 of 500 sessions."},
    {"storms", "A trouble: what was asked for is still carried out long after the calm, in 9 of 500 sessions."},
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
