#include "platform/linux/jack_server.h"
#include "platform/posix/real_runtime.h"
#include "platform/posix/run_loop.h"

#include <functional>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace lumbrine {
namespace {

// What the server thread asks of the clients, in order.
class Calls {
public:
    void note(const std::string& call) {
        const std::lock_guard held(mutex);
        all.push_back(call);
    }
    std::vector<std::string> taken() {
        const std::lock_guard held(mutex);
        return std::exchange(all, {});
    }

private:
    std::mutex mutex;
    std::vector<std::string> all;
};

class FakeClient final : public JackServer::Client {
public:
    FakeClient(std::string clientName, Calls& noted) : name(std::move(clientName)), calls(noted) {}

    MIDIStatus open() override {
        calls.note(name + " opens");
        return onOpen();
    }
    void close() override {
        calls.note(name + " closes");
        isLost = false;
    }
    bool lost() const override { return isLost; }
    bool review() override { return true; }

    std::function<MIDIStatus()> onOpen = [] { return 0; };
    bool isLost = false;

private:
    const std::string name;
    Calls& calls;
};

// libjack would free such a client, and we would do so once more. This waits for the attempt that comes after a second.
TEST(JackServerTest, ClosesAClientThatIsLostAsSoonAsItIsBackBeforeItOpensTheNextOne) {
    RunLoop loop;
    RealRuntime runtime(loop);
    Calls calls;
    FakeClient a("A", calls);
    FakeClient b("B", calls);
    a.onOpen = b.onOpen = [] { return -1; };
    JackServer server(runtime);
    EXPECT_EQ(server.add(a), -1);
    EXPECT_EQ(server.add(b), -1);
    EXPECT_EQ(calls.taken(), (std::vector<std::string>{"A opens", "B opens"}));

    Bell secondAttempt;
    server.run([&] {
        a.onOpen = [&a] {
            a.isLost = true; // the server has died again
            return 0;
        };
        b.onOpen = [&secondAttempt] {
            secondAttempt.ring();
            return -1;
        };
    });
    secondAttempt.wait();
    EXPECT_EQ(calls.taken(), (std::vector<std::string>{"A opens", "A closes", "B opens"}));
    server.remove(a);
    server.remove(b);
}

} // namespace
} // namespace lumbrine
