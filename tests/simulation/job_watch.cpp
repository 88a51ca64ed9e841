#include "tests/simulation/job_watch.h"

#include "model/testing/session_columns.h"

#include <utility>

namespace lumbrine::simulation {

std::string nameOf(Job job) {
    constexpr std::array names{"scan", "seek", "walk", "tap"};
    return names[static_cast<std::size_t>(job)];
}

JobWatch::JobWatch(Runtime& rt, const ReceiverState& receiverState, const SimulatedProTools& host)
    : runtime(rt), state(receiverState), proTools(host), lastLook(rt.now()),
      lookTimer(rt.repeatOnMain(seconds(1.0 / 60), [this] { look(); })),
      timer(rt.repeatOnMain(seconds(0.05), [this] { sample(); })),
      positionTimer(rt.repeatOnMain(seconds(0.4), [this] { samplePosition(); })) {}

void JobWatch::look() {
    const TimePoint now = runtime.now();
    const bool scanning = state.published.calibrating();
    const bool seeking = state.published.banksUsedBy == BankUser::seek;
    const bool walking = state.published.banksUsedBy == BankUser::walk;
    if (scanning + seeking + walking > 1)
        seen.violations.push_back("two jobs at once at " + std::to_string(inSeconds(now.time_since_epoch())) + " s");
    const bool taken = state.bankMoves % 2 == 1; // one taking, one return
    follow(Job::scan, scanning);
    follow(Job::seek, seeking);
    follow(Job::walk, walking);
    follow(Job::tap, taken && state.quiet());
    lastTaking = state.bankMoves;

    const bool transport = state.transportRunning();
    if (transport) {
        if (!lastTransport) seen.transport.push_back({now, now});
        seen.transport.back().last = now;
    }
    lastTransport = transport;
    lastOffset = state.published.bankOffset;
    lastLook = now;
}

void JobWatch::follow(Job job, bool running) {
    auto& run = underWay[static_cast<std::size_t>(job)];
    const TimePoint now = runtime.now();
    if (run && (!running || state.bankMoves != lastTaking)) {
        run->after = now;
        run->hostAfter = viewOf(proTools);
        run->mapAfter = displaysOf(state.published.session);
        seen.runs.push_back(*std::exchange(run, std::nullopt));
    }
    if (running && run) {
        run->last = now;
    } else if (running) {
        run = JobRun{.job = job,
                     .before = lastLook,
                     .first = now,
                     .last = now,
                     .transportRan = lastTransport && state.transportRunning(),
                     .origin = {},
                     .width = state.published.winW,
                     .hostAtFirst = viewOf(proTools),
                     .hostAfter = {},
                     .mapAtFirst = displaysOf(state.published.session),
                     .mapAfter = {}};
        if (state.published.bankOffset == lastOffset) run->origin = lastOffset;
    }
}

void JobWatch::sample() {
    look();
    const PublishedState& published = state.published;
    seen.presence.push_back({runtime.now(), published.huiConnected, published.iosConnected, published.winW});
    if (state.published.banksUsedBy == BankUser::walk)
        seen.hostOffsets.emplace_back(runtime.now(), proTools.snapshot().offset);
}

void JobWatch::samplePosition() {
    const int known = state.published.bankOffset;
    if (known < 0 || !state.quiet()) return;
    const HostView host = viewOf(proTools);
    if (host.names == displaysOf(state.published.session))
        seen.positions.push_back({runtime.now(), known, host.offset});
}

void JobWatch::note(const std::string& line) {
    look();
    seen.lines.emplace_back(runtime.now(), line);
}

JobRecord JobWatch::takeRecord() {
    look();
    timer.reset();
    positionTimer.reset();
    seen.ended = runtime.now();
    for (auto& run : underWay)
        if (run) seen.runs.push_back(*std::exchange(run, std::nullopt));
    return std::move(seen);
}

} // namespace lumbrine::simulation
