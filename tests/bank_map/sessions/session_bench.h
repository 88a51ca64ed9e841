// Lets the receiver map a session of a host, and judges the map and the position by the host's own tracks.
#pragma once

#include "tests/bank_map/sessions/named_sessions.h"
#include "tests/bank_map/sessions/session_lister.h"

#include <string>
#include <vector>

namespace lumbrine {

// What a host may do in one way or in another.
struct HostKind {
    bool banksAlign = true; // bank keys lead to multiples of the width, not as far as from where the surfaces are
    EndOfSession end = EndOfSession::fill;
    int surfaces = 1;
    ShortNameRule shortNames = ShortNameRule::cut;
    NonASCIIRule nonASCII = NonASCIIRule::blank;

    std::string text() const;
};

inline constexpr std::size_t everyHost = 4;

// Every bank rule and end of the session, or as many of them. With the number of the session the surfaces and the
// display rules go round, so that sessions of a kind meet all of them.
std::vector<HostKind> hostKinds(std::size_t session, std::size_t hosts);

struct Judgement {
    Found worst = Found::right; // of all views
    std::string where = {};     // the host's offset, and what the receiver had there
};

Judgement judge(const NamedSession& session, const HostKind& host, Witness witness);

} // namespace lumbrine
