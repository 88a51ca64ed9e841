#include "platform/linux/jack_server.h"

#include <jack/jack.h>

#include <algorithm>
#include <utility>

namespace lumbrine {

namespace {

constexpr Duration betweenAttempts = seconds(1);
constexpr Duration betweenReviews = seconds(0.02);

void ignoreMessage(const char* /*message*/) {}

// libjack would write about every failed attempt on standard error.
void silenceLibrary() {
    jack_set_error_function(ignoreMessage);
    jack_set_info_function(ignoreMessage);
}

} // namespace

bool JackServer::answers() {
    silenceLibrary();
    jack_client_t* client = jack_client_open("lumbrine-probe", JackNoStartServer, nullptr);
    if (client == nullptr) return false;
    jack_client_close(client);
    return true;
}

JackServer::JackServer(Runtime& rt) : runtime(rt), mutex(rt) {
    silenceLibrary();
    thread = runtime.startThread("jack server", [this] { serve(); });
}

JackServer::~JackServer() {
    stopping = true;
    bell.ring();
    thread.reset();
}

MIDIStatus JackServer::add(Client& client) {
    MIDIStatus status = 0;
    run([this, &client, &status] {
        status = client.open();
        entries.push_back({&client, status == 0});
        nextAttempt = runtime.now() + betweenAttempts;
    });
    return status;
}

void JackServer::remove(Client& client) {
    run([this, &client] {
        client.close();
        std::erase_if(entries, [&client](const Entry& entry) { return entry.client == &client; });
    });
}

void JackServer::run(const std::function<void()>& work) {
    Job job{work, {}};
    {
        const Lock lock(mutex);
        jobs.push_back(&job);
    }
    bell.ring();
    job.done.wait();
}

void JackServer::serve() {
    while (!stopping) {
        waitForSomething();
        closeAllWhenLost();
        runJobs();
        reopen();
        reviewSoon = false;
        for (const Entry& entry : entries)
            if (entry.open && !entry.client->review()) reviewSoon = true;
    }
}

void JackServer::waitForSomething() {
    const bool away = std::ranges::any_of(entries, [](const Entry& entry) { return !entry.open; });
    if (away) {
        bell.waitFor(std::max(nextAttempt - runtime.now(), Duration::zero()));
    } else if (reviewSoon) {
        bell.waitFor(betweenReviews);
    } else {
        bell.wait();
    }
}

void JackServer::runJobs() {
    std::vector<Job*> due;
    {
        const Lock lock(mutex);
        due.swap(jobs);
    }
    for (Job* job : due) {
        job->work();
        job->done.ring(); // the job is gone with this
    }
}

void JackServer::closeAllWhenLost() {
    const auto isLost = [](const Entry& entry) { return entry.open && entry.client->lost(); };
    if (std::ranges::none_of(entries, isLost)) return;
    for (Entry& entry : entries) {
        if (std::exchange(entry.open, false)) entry.client->close();
    }
    nextAttempt = runtime.now() + betweenAttempts;
}

void JackServer::reopen() {
    if (runtime.now() < nextAttempt) return;
    for (Entry& entry : entries) {
        if (entry.open) continue;
        closeAllWhenLost();
        nextAttempt = runtime.now() + betweenAttempts;
        entry.open = entry.client->open() == 0;
        if (!entry.open) return;
    }
}

} // namespace lumbrine
