// Work that grows with the session: finding the shown window in the track map, a bank move that changes 16 names, and
// sending a client the whole state. The peer of the last one sends the same datagrams and does nothing else.
#include "base/testing/allocation_count.h"
#include "benchmarks/session_receiver.h"
#include "model/bank/track_window.h"

#include <benchmark/benchmark.h>

namespace lumbrine {
namespace {

using Names = std::vector<std::string>;

constexpr std::array<std::size_t, 3> sizes{20, 200, 1000};

// "0001" and so on.
Names numberedNames(std::size_t count) {
    Names names;
    for (std::size_t i = 1; i <= count; ++i) {
        const std::string number = std::to_string(i);
        names.push_back(std::string(4 - number.size(), '0') + number);
    }
    return names;
}

// The worst case for the search: all names but the last are equal, so that 15 of 16 names match at every position.
Names namesAlike(std::size_t count) {
    Names names(count, "Audi");
    names.back() = "Mstr";
    return names;
}

// Runs `body` as often as the benchmark wants and reports the allocations of one run.
template <typename Body>
void measure(benchmark::State& state, Body body) {
    const int before = allocationCount();
    for (auto _ : state)
        body();
    state.counters["allocations"] =
        static_cast<double>(allocationCount() - before) / static_cast<double>(state.iterations());
}

void locateLastWindow(benchmark::State& state, const Names& map) {
    const Session session = Session::of(map);
    const auto window = std::span(map).last(stripCount);
    measure(state, [&] { benchmark::DoNotOptimize(locate(session.tracks, window)); });
}

// In the middle of a bank move: half of the names have changed, and the window matches no position.
void relocalize(benchmark::State& state, const Names& map) {
    SessionReceiver receiver(map);
    for (std::size_t i = 0; i < stripCount / 2; ++i)
        receiver.parts.state.published.strips[i].name = map[i + 4];
    receiver.parts.bankMap.relocalize();
    measure(state, [&] { receiver.parts.bankMap.relocalize(); });
}

void nameChanges(benchmark::State& state, const Names& map) {
    SessionReceiver receiver(map);
    bool atTheEnd = false;
    measure(state, [&] {
        atTheEnd = !atTheEnd;
        receiver.showFrom(atTheEnd ? map.size() - stripCount : 0);
    });
}

template <void (SessionReceiver::*resend)()>
void resendOurs(benchmark::State& state, const Names& map) {
    SessionReceiver receiver(map);
    measure(state, [&] { (receiver.*resend)(); });
}

template <void (SessionReceiver::*resend)()>
void resendPeer(benchmark::State& state, const Names& map) {
    SessionReceiver receiver(map);
    const std::vector<Bytes> datagrams = receiver.sentBy([&] { (receiver.*resend)(); });
    measure(state, [&] { receiver.sendBare(datagrams); });
}

bool registerAll() {
    using benchmark::RegisterBenchmark;
    for (const std::size_t tracks : sizes) {
        const Names names = numberedNames(tracks);
        const std::string size = ", " + std::to_string(tracks) + " tracks";
        RegisterBenchmark(("locate a window" + size + "/ours").c_str(), locateLastWindow, names);
        RegisterBenchmark(("relocalize on a name change" + size + "/ours").c_str(), relocalize, names);
        RegisterBenchmark(("16 name changes of a bank move" + size + "/ours").c_str(), nameChanges, names);
        const std::string hello = "resend after a hello" + size;
        RegisterBenchmark((hello + "/ours").c_str(), resendOurs<&SessionReceiver::answerHello>, names);
        RegisterBenchmark((hello + "/peer").c_str(), resendPeer<&SessionReceiver::answerHello>, names);
        const std::string table = "resend of the table" + size;
        RegisterBenchmark((table + "/ours").c_str(), resendOurs<&SessionReceiver::resendTable>, names);
        RegisterBenchmark((table + "/peer").c_str(), resendPeer<&SessionReceiver::resendTable>, names);
    }
    RegisterBenchmark("locate a window, 1000 tracks alike/ours", locateLastWindow, namesAlike(1000));
    return true;
}

[[maybe_unused]] const bool registered = registerAll();

} // namespace
} // namespace lumbrine
