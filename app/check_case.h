// The checks that a diagnosis consists of, one by one.
#pragma once

#include "app/diagnosis.h"

#include <string>
#include <string_view>

namespace lumbrine {

// What all checks are made from.
struct Case {
    const PublishedState& published;
    const Health& health;
    bool onMac;
    const Bilingual& text;

    std::string port() const { return std::to_string(health.port); }
};

// network_checks.cpp
Check portCheck(const Case& c);
Check addressCheck(const Case& c);
Check announcementCheck(const Case& c);
Check phoneCheck(const Case& c);

// host_checks.cpp
struct SurfaceCase {
    std::string_view id;
    std::string port;
    std::string strips;
    bool heardNow;
    bool heardBefore;
};

Check midiCheck(const Case& c);
Check connectionCheck(const Case& c);
Check surfaceCheck(const Case& c, const SurfaceCase& surface);
Check faderCheck(const Case& c);
Check mapCheck(const Case& c);
Check scriptingCheck(const Case& c);
Check screenCheck(const Case& c);

} // namespace lumbrine
