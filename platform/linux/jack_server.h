// The process's link to the JACK server. It opens the JACK clients of the process, and opens them again after a restart
// of the server.
//
// All calls into libjack are made on one thread, the server thread, except those inside process callbacks. It sleeps
// until something happens, but wakes up once a second to see whether the open clients run and to open the others.
//
// While a JACK server hangs, libjack blocks the server thread. No other thread waits for that: every wait here has a
// limit.
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

// All JACK clients of a process share one object, because after the end of a server libjack requires that all of them
// are closed before the first one is opened again.
class JackServer {
public:
    // Limits for opening and registering, and for closing.
    static constexpr Duration openingTime = seconds(2);
    static constexpr Duration closingTime = seconds(0.4);

    // An open client that has had no cycle for this long is closed and opened again. libjack keeps one table of wake-up
    // semaphores, by client number, for all clients of a process. When another program's client closes, the server
    // notifies the others later. If it gives the number to a second client of this process before that, libjack keeps
    // the old semaphore in the table: the new client never wakes up, and a synchronous server waits for it in every
    // cycle.
    static constexpr Duration firstCycleTime = seconds(1);

    // After the crash of another program's client, the server may stop waking one of ours for good. So the clients'
    // cycles are compared at this interval. One that had none in one interval, and none in the next although the server
    // answered in between, is closed and opened again. A server that hangs does not answer: its clients keep their
    // ports and connections.
    static constexpr Duration betweenLooks = seconds(1);

    // A JACK client. All its functions are called on the server thread.
    class Client {
    public:
        virtual ~Client() = default;

        // Returns 0 when the client is open. Otherwise returns JACK's status, which is not 0, and leaves nothing open.
        virtual MIDIStatus open() = 0;
        virtual void close() = 0;

        // True when the server has ended or has removed the open client.
        virtual bool lost() const = 0;

        // The number of cycles since it was opened.
        virtual std::uint64_t cycles() const = 0;

        // Returns when the server has answered or has ended. Only while it is open.
        virtual void askServer() = 0;

        // Looks for changed ports and connections of the server. Returns false to be called again in 20 ms.
        virtual bool review() = 0;
    };

    // All clients must be removed before the last owner releases the object. The release waits for the server thread
    // for at most `closingTime`. If libjack blocks the thread for longer, thread and object stay until libjack returns.
    static std::shared_ptr<JackServer> start(Runtime& rt);

    // Checks whether a server answers and calls `tell` with the result, then again whenever that changes, always on the
    // server thread. A server is lost when it has removed a client, and back when all clients run. Without clients a
    // server is looked for every two seconds. Never starts a server. Call once.
    void watch(std::function<void(bool isThere)> tell);

    // Opens the client and returns 0, or the status when that fails, or -ETIMEDOUT when the server thread has not
    // finished within `openingTime`. In each case the client stays in the list, and opening is tried again.
    MIDIStatus add(Client& client);

    // Closes and removes the client; it is not called afterwards. Returns false when that takes longer than
    // `closingTime`: then the client is kept, and may still be called, until the server thread has closed it.
    bool remove(std::shared_ptr<Client> client);

    // Runs a job on the server thread and waits for it. Returns false when it has not ended within `limit`; it may
    // still run later, so it must own everything that it uses.
    bool run(std::function<void()> work, Duration limit);

    // Called at the begin and the end of a process callback, on realtime threads. libjack runs the process's clients in
    // turn with synchronisation the C++ memory model cannot see; this acquire/release pair makes it visible.
    void beginCycle() const { static_cast<void>(cycleParts.load(std::memory_order_acquire)); }
    void endCycle() { cycleParts.fetch_add(1, std::memory_order_release); }

    // Reports a change: a client was lost or has had its first cycle, or a port was added or removed. Any thread, also
    // a realtime thread.
    void look() { bell.ring(); }

private:
    struct Entry {
        Client* client;
        bool open;
        TimePoint opened{};
        std::uint64_t cycles = 0; // at the last look
        bool stoodStill = false;  // between the last two looks, and the server has answered since
    };
    struct Job {
        std::function<void()> work;
        std::atomic<bool> ended{false};
        Bell done;
    };

    explicit JackServer(Runtime& runtime);

    void post(std::shared_ptr<Job> job);
    void end();

    void serve();
    void waitForSomething();
    void runJobs();
    void closeAllWhenLost(); // if any client is lost
    void closeThoseThatNeverRan();
    void closeThoseThatStandStill();
    void close(Entry& entry);
    static bool runs(const Entry& entry) { return entry.open && entry.client->cycles() != 0; }
    bool waitsForAFirstCycle() const;
    void reopen();
    void lookForServer();
    void report(bool isThere);

    Runtime& runtime;
    Bell bell;
    std::atomic<std::uint64_t> cycleParts{0};
    std::atomic<bool> stopping{false};
    std::atomic<bool> standsStill{false}; // a wait ran into its limit, and the server thread still hangs in libjack
    Mutex mutex;
    std::vector<std::shared_ptr<Job>> jobs LUMBRINE_GUARDED_BY(mutex);

    // Server thread only.
    std::vector<Entry> entries;
    std::function<void(bool)> tell;
    bool away = false; // as reported last
    TimePoint nextAttempt{};
    TimePoint nextLook{};
    bool reviewSoon = false;

    std::atomic<bool> served{false};
    Bell ended;
    std::unique_ptr<Thread> thread;
};

} // namespace lumbrine
