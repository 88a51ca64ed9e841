// A receiver with a session and one client on real sockets, for benchmarks that call its parts directly on the main
// thread. No timer runs, and the MIDI ports take everything and do nothing.
#pragma once

#include "model/receiver_parts.h"
#include "platform/api/main_loop.h"
#include "platform/portable/nlohmann_json.h"
#include "platform/portable/no_accessibility.h"
#include "platform/posix/real_runtime.h"
#include "platform/virtual/null_platform.h"

#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace lumbrine {

// A main queue whose jobs run inside drain(), without their delays. Not thread-safe: use it from one thread only.
class HandDrivenLoop final : public MainLoop {
public:
    void drain();

    bool onMain() const override;
    void post(Task task) override { jobs.push_back(std::move(task)); }
    void postAfter(Duration, Task task) override { post(std::move(task)); }
    std::unique_ptr<RepeatingTimer> repeat(Duration, std::function<void()>) override { return nullptr; }
    void stop() override {}

private:
    std::deque<Task> jobs;
};

// Tracks with these names on the strips, 4 characters each. Each track also has a full name, a colour, a comment, a
// fader position and flags, so that every message of the table has content.
Session detailedSession(const std::vector<std::string>& names);

class SessionReceiver {
public:
    // The session is that of `detailedSession`.
    explicit SessionReceiver(const std::vector<std::string>& names);
    ~SessionReceiver();
    SessionReceiver(const SessionReceiver&) = delete;
    SessionReceiver& operator=(const SessionReceiver&) = delete;

    // The 16 track names that Pro Tools sends after a bank move that puts `track` (from 0) on the first strip.
    void showFrom(std::size_t track);

    // Send everything that follows a hello, or all rows of the track table. All is sent when they return.
    void answerHello();
    void resendTable();

    // Runs `act` and returns the datagrams that it sent.
    std::vector<Bytes> sentBy(const std::function<void()>& act);

    // Sends them to the client from another socket: the cost of the system calls alone.
    void sendBare(const std::vector<Bytes>& datagrams);

private:
    class Sockets;

    const std::shared_ptr<const int> life = std::make_shared<int>(0); // the parts' jobs run only while this exists
    HandDrivenLoop loop;
    RealRuntime runtime;
    NullMIDI midi;
    NullAdvertiser advertiser;
    NullStreams streams;
    NlohmannJSON json{Bilingual(false)};
    NoAccessibility accessibility;
    std::unique_ptr<Sockets> sockets;
    const NullComputer system;
    int phone; // the client's socket; nothing is ever read from it
    PeerAddress phoneAddress;
    std::string phoneKey;

public:
    ReceiverParts parts;
};

} // namespace lumbrine
