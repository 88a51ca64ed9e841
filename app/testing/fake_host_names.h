// For tests: a network whose hosts say their names when the test makes them.
#pragma once

#include "platform/api/host_names.h"

#include <utility>
#include <vector>

namespace lumbrine {

class FakeHostNames final : public HostNames {
public:
    std::unique_ptr<HostNameSearch> find(const std::string& address,
                                         std::function<void(const std::string&)> found) override {
        asked.push_back(address);
        answer = std::move(found);
        return std::make_unique<HostNameSearch>();
    }

    std::vector<std::string> asked;
    std::function<void(const std::string&)> answer;
};

} // namespace lumbrine
