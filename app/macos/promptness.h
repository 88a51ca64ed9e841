// Decides when macOS must run the receiver without delays.
#pragma once

#include "model/state/published_state.h"

#include <functional>
#include <memory>

namespace lumbrine {

// Holds the object that `begin` returns as long as Pro Tools or a client is connected. Main thread.
class Promptness {
public:
    using Hold = std::shared_ptr<void>; // the activity ends with the last copy

    explicit Promptness(std::function<Hold()> begin);

    void follow(const PublishedState& published);

private:
    const std::function<Hold()> begin;
    Hold hold;
};

} // namespace lumbrine
