// What the receiver asks about the computer it runs on.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace lumbrine {

class SystemInfo {
public:
    virtual ~SystemInfo() = default;

    // The value of an environment variable; absent when it is not set, which is not the same as empty.
    virtual std::optional<std::string> environment(const std::string& name) const = 0;

    // The user's languages, most preferred first ("ja-JP", "en_US.UTF-8").
    virtual std::vector<std::string> preferredLanguages() const = 0;

    // The name people gave this computer; absent when it has none.
    virtual std::optional<std::string> computerName() const = 0;

    // The address under which a phone on the same network reaches this computer: of the interfaces that are up and not
    // loopback and have an IPv4 address, "en0" or "en1" if there, else the first. Numeric; absent when there is none.
    virtual std::optional<std::string> primaryIPv4() const = 0;
};

} // namespace lumbrine
