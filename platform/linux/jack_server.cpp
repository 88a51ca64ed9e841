#include "platform/linux/jack_server.h"

#include <jack/jack.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

namespace lumbrine {

namespace {

constexpr Duration betweenAttempts = seconds(1);
constexpr Duration betweenSearches = seconds(2);   // libjack wakes up five times in each
constexpr Duration betweenReviews = seconds(0.02); // about a cycle: a new connection is live after one of the next

bool serverAnswers() {
    jack_client_t* client = jack_client_open("lumbrine-probe", JackNoStartServer, nullptr);
    if (client != nullptr) jack_client_close(client);
    return client != nullptr;
}

void ignoreMessage(const char* /*message*/) {}

// Otherwise libjack writes to standard error for every failed attempt.
void silenceLibrary() {
    jack_set_error_function(ignoreMessage);
    jack_set_info_function(ignoreMessage);
}

} // namespace

std::shared_ptr<JackServer> JackServer::start(Runtime& rt) {
    const std::shared_ptr<JackServer> server(new JackServer(rt));
    server->thread = rt.startThread("jack server", [server] {
        server->serve();
        server->served = true;
        server->ended.ring();
    });
    return {server.get(), [server](JackServer* ending) { ending->end(); }};
}

JackServer::JackServer(Runtime& runtime) : runtime(runtime), mutex(runtime) {
    silenceLibrary();
}

void JackServer::end() {
    stopping = true;
    bell.ring();
    // Destroying the thread object joins it, so it is destroyed here only if the thread has finished. Otherwise the
    // thread owns this object, and with it its own thread object, until libjack returns.
    if (!standsStill) ended.waitFor(closingTime);
    if (served) thread.reset();
}

void JackServer::watch(std::function<void(bool)> observer) {
    const auto job = std::make_shared<Job>();
    job->work = [this, observer = std::move(observer)] {
        tell = observer;
        away = !serverAnswers();
        nextAttempt = runtime.now() + betweenAttempts;
        if (!stopping) tell(!away);
    };
    post(job);
}

MIDIStatus JackServer::add(Client& client) {
    const auto status = std::make_shared<std::atomic<MIDIStatus>>(-ETIMEDOUT);
    run(
        [this, &client, status] {
            const MIDIStatus opened = client.open();
            if (opened != 0) report(false);
            entries.push_back({.client = &client, .open = opened == 0, .opened = runtime.now()});
            nextAttempt = runtime.now() + betweenAttempts;
            *status = opened;
        },
        openingTime);
    return *status;
}

bool JackServer::remove(std::shared_ptr<Client> client) {
    return run(
        [this, removed = std::move(client)] {
            removed->close();
            std::erase_if(entries, [&removed](const Entry& entry) { return entry.client == removed.get(); });
        },
        closingTime);
}

bool JackServer::run(std::function<void()> work, Duration limit) {
    const auto job = std::make_shared<Job>();
    job->work = std::move(work);
    post(job);
    // One caller pays the full limit for a hanging server; the next ones do not wait at all.
    if (!standsStill) job->done.waitFor(limit);
    if (job->ended) return true;
    standsStill = true;
    return false;
}

void JackServer::post(std::shared_ptr<Job> job) {
    {
        const Lock lock(mutex);
        jobs.push_back(std::move(job));
    }
    bell.ring();
}

void JackServer::serve() {
    while (!stopping) {
        waitForSomething();
        standsStill = false;
        closeAllWhenLost();
        closeThoseThatNeverRan();
        closeThoseThatStandStill();
        runJobs();
        if (stopping) break;
        reopen();
        lookForServer();
        reviewSoon = false;
        for (const Entry& entry : entries)
            if (entry.open && !entry.client->review()) reviewSoon = true;
    }
    runJobs(); // jobs that came too late for the loop, such as removals whose caller has stopped waiting
}

void JackServer::waitForSomething() {
    std::optional<TimePoint> until;
    const auto noLaterThan = [&until](TimePoint time) { until = until ? std::min(*until, time) : time; };
    const bool waits = waitsForAFirstCycle();
    for (const Entry& entry : entries) {
        if (!entry.open && !waits) noLaterThan(nextAttempt);
        if (entry.open) noLaterThan(runs(entry) ? nextLook : entry.opened + firstCycleTime);
    }
    if (away && entries.empty()) noLaterThan(nextAttempt);
    if (reviewSoon) noLaterThan(runtime.now() + betweenReviews);
    if (!until) {
        bell.wait();
    } else {
        bell.waitFor(std::max(*until - runtime.now(), Duration::zero()));
    }
}

bool JackServer::waitsForAFirstCycle() const {
    return std::ranges::any_of(entries, [](const Entry& entry) { return entry.open && !runs(entry); });
}

void JackServer::runJobs() {
    std::vector<std::shared_ptr<Job>> due;
    {
        const Lock lock(mutex);
        due.swap(jobs);
    }
    for (const std::shared_ptr<Job>& job : due) {
        job->work();
        job->work = {}; // destroys what it captured before the caller continues
        job->ended = true;
        job->done.ring();
    }
}

// When libjack opens a client after the server has ended, it frees the lost ones; closing one of them later would
// crash. So all are closed first.
void JackServer::closeAllWhenLost() {
    const auto isLost = [](const Entry& entry) { return entry.open && entry.client->lost(); };
    if (std::ranges::none_of(entries, isLost)) return;
    for (Entry& entry : entries)
        if (entry.open) close(entry);
}

void JackServer::closeThoseThatNeverRan() {
    const TimePoint now = runtime.now();
    for (Entry& entry : entries) {
        if (entry.open && !runs(entry) && now >= entry.opened + firstCycleTime) close(entry);
    }
}

void JackServer::closeThoseThatStandStill() {
    if (runtime.now() < nextLook) return;
    for (Entry& entry : entries) {
        if (!runs(entry)) continue;
        const std::uint64_t cycles = entry.client->cycles();
        if (std::exchange(entry.cycles, cycles) != cycles) {
            entry.stoodStill = false;
        } else if (std::exchange(entry.stoodStill, true)) {
            close(entry);
        } else {
            entry.client->askServer();
        }
    }
    nextLook = runtime.now() + betweenLooks; // from the server's answer on
}

void JackServer::close(Entry& entry) {
    report(false); // first, because a server that runs a client no more may take seconds to close it
    entry.open = false;
    entry.stoodStill = false;
    entry.client->close();
    nextAttempt = runtime.now() + betweenAttempts;
}

void JackServer::reopen() {
    if (runtime.now() < nextAttempt) return;
    for (Entry& entry : entries) {
        if (entry.open) continue;
        closeAllWhenLost(); // the server may have ended while the previous client was opened
        // A client that never runs blocks a synchronous server, and so the opening of the next one.
        if (waitsForAFirstCycle()) return;
        nextAttempt = runtime.now() + betweenAttempts;
        entry.open = entry.client->open() == 0;
        if (!entry.open) return;
        entry.opened = runtime.now();
    }
}

void JackServer::lookForServer() {
    if (!away) return;
    if (!entries.empty()) {
        if (std::ranges::all_of(entries, runs)) report(true);
    } else if (runtime.now() >= nextAttempt) {
        nextAttempt = runtime.now() + betweenSearches;
        if (serverAnswers()) report(true);
    }
}

void JackServer::report(bool isThere) {
    if (std::exchange(away, !isThere) == !isThere) return;
    if (tell && !stopping) tell(isThere);
}

} // namespace lumbrine
