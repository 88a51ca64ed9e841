// How much faster than real time virtual time passes under the load of a busy receiver: a tick every 0.4 s, a meter
// timer every 1/60 s, and 100 datagrams a second, for each of which the receive thread takes two locks and posts one
// job to the main thread.
#include "platform/virtual/virtual_network.h"
#include "platform/virtual/virtual_runtime.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>

namespace lumbrine {
namespace {

using namespace std::chrono_literals;

constexpr Duration span = 2min;
constexpr int runs = 5; // the fastest counts
constexpr double goal = 500;

class Load {
public:
    Load() {
        server.bind(serverSocket, 5000);
        phone.resolve("10.0.0.1", 5000, serverAddress);
    }

    // The number of jobs that arrived on the main thread.
    int run() {
        const auto receiver = runtime.startThread("receiver", [this] { receive(); });
        const auto sender = runtime.repeatOnMain(10ms, [this] { phone.send(phoneSocket, message, serverAddress); });
        const auto tick = runtime.repeatOnMain(400ms, [this] { ++ticks; });
        const auto meters = runtime.repeatOnMain(seconds(1.0 / 60), [this] { ++ticks; });
        runtime.runFor(span);
        server.shutDown(serverSocket);
        return posted;
    }

private:
    void receive() {
        Bytes buffer(2048);
        PeerAddress from;
        while (server.receive(serverSocket, buffer, from) >= 0) {
            {
                const Lock lock(clientLock);
            }
            {
                const Lock lock(txLock);
            }
            runtime.postMain([this] { ++posted; });
        }
    }

    VirtualRuntime runtime;
    VirtualNetwork network{runtime};
    DatagramSockets& server = network.host("10.0.0.1");
    DatagramSockets& phone = network.host("10.0.0.2");
    int serverSocket = server.open();
    int phoneSocket = phone.open();
    PeerAddress serverAddress;
    const Bytes message = Bytes(12, 1);
    Mutex clientLock{runtime};
    Mutex txLock{runtime};
    int ticks = 0;
    int posted = 0;
};

} // namespace
} // namespace lumbrine

int main() {
    // Measured as processor time, which does not include other programs' work. Only one thread of a virtual runtime
    // runs at a time, so on an idle machine it equals the time that passes.
    double factor = 0;
    for (int i = 0; i < lumbrine::runs; ++i) {
        lumbrine::Load load;
        const std::clock_t begin = std::clock();
        const int posted = load.run();
        const double taken = static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
        std::printf("  %d datagrams in %.3f s\n", posted, taken);
        factor = std::max(factor, lumbrine::inSeconds(lumbrine::span) / taken);
    }
    std::printf("virtual time: %.0f times as fast as real time (at least %.0f wanted)\n", factor, lumbrine::goal);
    return factor >= lumbrine::goal ? 0 : 1;
}
