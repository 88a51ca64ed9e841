// The process's link to the JACK server: keeps its clients there, and brings them back when the server was gone.
//
// Every call into libjack that is not made from a process callback is made on one thread, the server thread. It sleeps
// until something happens; only while clients are away does it wake up by itself, once a second, to try again.
//
// A JACK server that stands still keeps the server thread inside libjack for as long as it does. Nobody waits for that:
// every wait here has a limit.
#pragma once

#include "platform/api/midi_services.h"
#include "platform/api/runtime.h"
#include "platform/linux/bell.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace lumbrine {

// One object for all JACK clients of a process: libjack wants every one of them closed after the server has died before
// it opens the first one again.
class JackServer {
public:
    // How long opening and registering may take, and how long closing may.
    static constexpr Duration openingTime = seconds(2);
    static constexpr Duration closingTime = seconds(0.4);

    // What lives at the server. All of it is called on the server thread.
    class Client {
    public:
        virtual ~Client() = default;

        // 0, or JACK's status (never 0) and nothing left open.
        virtual MIDIStatus open() = 0;
        virtual void close() = 0;

        // True when the server has died or has thrown the open client out.
        virtual bool lost() const = 0;

        // Looks at what has changed at the server; false when it wants to look again soon.
        virtual bool review() = 0;
    };

    // Clients are removed before the last owner lets go. That waits for the server thread no longer than `closingTime`;
    // thread and object are gone when libjack lets the thread go, if ever.
    static std::shared_ptr<JackServer> start(Runtime& rt);

    // Finds out whether a server answers, and tells it on the server thread. Never starts one.
    void ask(std::function<void(bool answers)> tell);

    // Opens the client now; when that fails, returns why and goes on trying, as it does when it returns -ETIMEDOUT
    // because the server thread has not come to an end with it.
    MIDIStatus add(Client& client);

    // Closes the client; it is not called any more. False when that takes too long: it goes on being called then, and
    // is kept until it is closed.
    bool remove(std::shared_ptr<Client> client);

    // Runs a job on the server thread and waits for it; false when it has not ended within `limit`. It may run later
    // then, so it keeps what it uses.
    bool run(std::function<void()> work, Duration limit);

    // Around a client's part of a cycle. JACK lets the clients of a process work one after another on the same buffers,
    // by means that the language does not know; these say it in the language. Realtime threads.
    void beginCycle() const { static_cast<void>(cycleParts.load(std::memory_order_acquire)); }
    void endCycle() { cycleParts.fetch_add(1, std::memory_order_release); }

    // Something has changed: a client was lost, a port came or went. Any thread, a realtime one too.
    void look() { bell.ring(); }

private:
    struct Entry {
        Client* client;
        bool open;
    };
    struct Job {
        std::function<void()> work;
        std::atomic<bool> ended{false};
        Bell done;
    };

    explicit JackServer(Runtime& rt);

    void post(std::shared_ptr<Job> job);
    void end();

    void serve();
    void waitForSomething();
    void runJobs();
    void closeAllWhenLost(); // before any opens, since libjack would free them in that
    void reopen();

    Runtime& runtime;
    Bell bell;
    std::atomic<std::uint64_t> cycleParts{0};
    std::atomic<bool> stopping{false};
    std::atomic<bool> standsStill{false}; // somebody has waited in vain, and the server thread is not back since
    Mutex mutex;
    std::vector<std::shared_ptr<Job>> jobs LUMBRINE_GUARDED_BY(mutex);

    // Of the server thread alone.
    std::vector<Entry> entries;
    TimePoint nextAttempt{};
    bool reviewSoon = false;

    std::atomic<bool> served{false};
    Bell ended;
    std::unique_ptr<Thread> thread;
};

} // namespace lumbrine
