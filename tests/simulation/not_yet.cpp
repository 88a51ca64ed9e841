#include "tests/simulation/not_yet.h"

#include <algorithm>

namespace lumbrine::simulation {

bool Switches::switchOn(std::string_view name) {
    bool found = name == "all";
    for (const NotYet& entry : notYet) {
        if (name != "all" && entry.name != name) continue;
        on.insert(std::string(entry.name));
        found = true;
    }
    return found;
}

bool Switches::isOn(std::string_view name) const {
    return on.contains(name) || std::ranges::find(notYet, name, &NotYet::name) == notYet.end();
}

} // namespace lumbrine::simulation
