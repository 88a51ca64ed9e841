// The name of the phone, for texts that would otherwise show its address: "Annas-iPhone" instead of "192.168.1.7".
#pragma once

#include "model/state/published_state.h"
#include "platform/api/host_names.h"
#include "platform/api/runtime.h"

#include <functional>
#include <memory>
#include <string>

namespace lumbrine {

// Main thread.
class ClientName {
public:
    // `hosts`: null where nobody can be asked. `learned` is called when texts should be made again.
    ClientName(Runtime& runtime, HostNames* hosts, std::function<void()> learned);

    // To be called after each change of the state. Asks a client for its name when it takes control. Cheap. Where the
    // receiver is not announced, nobody is asked.
    void look(const PublishedState& published);

    // The text with the name in place of the address of the last client that has one.
    std::string in(std::string text) const;

private:
    Runtime& runtime;
    HostNames* const hosts;
    const std::function<void()> learned;
    std::string address; // of the last client that was asked, as people write it
    std::string name;    // empty until it has answered
    const std::shared_ptr<const int> life = std::make_shared<int>(0);
    std::unique_ptr<HostNameSearch> search; // last member: destroyed first, it calls this object
};

} // namespace lumbrine
