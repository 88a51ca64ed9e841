// When the system has to let the receiver work without delay.
#pragma once

#include "model/state/published_state.h"

#include <functional>
#include <memory>

namespace lumbrine {

// Holds what `begin` returns while Pro Tools or a client is there. Main thread.
class Promptness {
public:
    using Hold = std::shared_ptr<void>; // ends with its last copy

    explicit Promptness(std::function<Hold()> beginHold);

    void follow(const PublishedState& published);

private:
    const std::function<Hold()> begin;
    Hold hold;
};

} // namespace lumbrine
