// The keys of paired clients as the window shows them.
#pragma once

#include "base/bilingual.h"
#include "model/state/paired_mode.h"
#include "platform/api/time.h"
#include "seal/key_list.h"

#include <string>
#include <vector>

namespace lumbrine {

struct KeyUse {
    seal::NamedKey key;
    TimePoint last = distantPast; // that a client opened a session with it; distantPast: not since the start
};

struct KeyRow {
    std::string name;
    std::string letters; // of the key, for people and for a QR code
    std::string use;     // "used 5 min ago"
};

struct KeysPage {
    std::string title;
    std::string advice;
    std::vector<KeyRow> rows;
    std::string forgetButton;
    std::string forgetAllButton;
    std::string closeButton;
    std::string pairedSwitch;
    std::string pairedAdvice; // why the switch cannot be used; empty when it can
    bool onlyPaired = false;
};

KeysPage keysPage(const std::vector<KeyUse>& keys, PairedMode mode, TimePoint now, const Bilingual& text);

} // namespace lumbrine
