// A receiver that knows a session and has a client, on real sockets, for benchmarks that call its parts directly on the
// main thread. Nothing happens by itself: no timer runs, and the MIDI ports take everything and do nothing.
#pragma once

#include "benchmarks/null_platform.h"
#include "model/receiver_parts.h"
#include "platform/api/main_loop.h"
#include "platform/posix/real_runtime.h"

#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace lumbrine {

// A main queue that runs when it is told to. Only the thread that made it posts.
class HandDrivenLoop final : public MainLoop {
public:
    void drain();

    bool onMain() const override;
    void post(Task task) override { jobs.push_back(std::move(task)); }
    void postAfter(Duration, Task) override {}
    std::unique_ptr<RepeatingTimer> repeat(Duration, std::function<void()>) override { return nullptr; }
    void stop() override {}

private:
    std::deque<Task> jobs;
};

class SessionReceiver {
public:
    // The display names of the tracks. Each has a full name, a colour, a comment and all else that a client is told.
    explicit SessionReceiver(std::vector<std::string> names);
    ~SessionReceiver();
    SessionReceiver(const SessionReceiver&) = delete;
    SessionReceiver& operator=(const SessionReceiver&) = delete;

    // What Pro Tools sends when the first strip comes to show that track: the 16 names, one after another.
    void showFrom(std::size_t track);

    // Everything that a client is told after a hello, and all rows of the track table; to the last datagram.
    void answerHello();
    void resendTable();

    // The datagrams that `act` sends.
    std::vector<Bytes> sentBy(const std::function<void()>& act);

    // Sends them to the client from a socket of its own: what the system alone costs.
    void sendBare(const std::vector<Bytes>& datagrams);

private:
    class Sockets;
    class System;

    const std::shared_ptr<const int> life = std::make_shared<int>(0); // whose end would end the parts' jobs
    HandDrivenLoop loop;
    RealRuntime runtime;
    NullMIDI midi;
    NullAdvertiser advertiser;
    NullStreams streams;
    NlohmannJSON json{Bilingual(false)};
    NoAccessibility accessibility;
    std::unique_ptr<Sockets> sockets;
    std::unique_ptr<System> system;
    int phone; // the client: it takes everything, as a phone does that nobody looks at
    PeerAddress phoneAddress;
    std::string phoneKey;

public:
    ReceiverParts parts;
};

} // namespace lumbrine
