// Facts about the computer that the receiver runs on.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace lumbrine {

class SystemInfo {
public:
    virtual ~SystemInfo() = default;

    // The value of an environment variable; absent when it is not set. A variable may be set and empty.
    virtual std::optional<std::string> environment(const std::string& name) const = 0;

    // The user's languages, most preferred first ("ja-JP", "en_US.UTF-8").
    virtual std::vector<std::string> preferredLanguages() const = 0;

    // The name that the user gave this computer; absent when there is none.
    virtual std::optional<std::string> computerName() const = 0;

    // The numeric address at which a phone on the same network reaches this computer. Candidates are the IPv4 addresses
    // of interfaces that are up and not loopback; the first one on "en0" or "en1" wins, else the first of all. Absent
    // without a candidate.
    virtual std::optional<std::string> primaryIPv4() const = 0;
};

} // namespace lumbrine
