// How many refusals the receiver sends. Refusals answer datagrams whose sender addresses may be forged, so without a
// limit anybody could make the receiver flood another computer.
#pragma once

#include "platform/api/time.h"

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace lumbrine {

// One thread at a time.
class RefusalLimit {
public:
    static constexpr Duration period = seconds(1.0);
    static constexpr std::size_t perHost = 50; // within any period
    static constexpr std::size_t inAll = 1000;

    // True when one more refusal may go to this numeric host now.
    bool allows(std::string_view host, TimePoint now);

    // A refusal that was allowed has been sent. Only now does it count, because a thread may stand still between being
    // allowed to send and sending.
    void count(std::string_view host, TimePoint now);

private:
    using Hosts = std::map<std::string, std::size_t, std::less<>>; // refusals in the last period, never 0

    void forgetBefore(TimePoint now);

    Hosts hosts;
    std::deque<std::pair<TimePoint, Hosts::iterator>> recent; // oldest first, at most `inAll`
};

} // namespace lumbrine
