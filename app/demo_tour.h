// A tour of the receiver with nobody at the keys: two clients touch, move, press, are refused and take over, and the
// tour tells what was sent, what the simulated Pro Tools did, what came back, and how long that took.
#pragma once

#include "platform/api/datagram_sockets.h"
#include "platform/api/runtime.h"
#include "remote/remote_client.h"
#include "simulator/simulated_pro_tools.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lumbrine {

class DemoTour {
public:
    struct Stage {
        Runtime& runtime;
        DatagramSockets& sockets;
        SimulatedProTools& proTools;
        std::uint16_t receiverPort;
        std::function<bool()> receiverIsReady; // it knows the session and leaves the banks alone
        std::function<void(const std::string& line)> print;
        std::function<void(bool succeeded)> done; // once, at the end
    };

    explicit DemoTour(Stage demoStage);
    ~DemoTour();

    // Main thread; returns at once.
    void start();

private:
    // One thing that a client does, and the answer that has to come within a few seconds.
    struct Step {
        std::size_t phone; // who acts and hears the answer
        std::string says;
        std::function<void(remote::RemoteClient&)> act;
        std::function<std::optional<std::string>()> answer; // looked at after each message; what came back, in words
        bool timed = true;                                  // counts for the round-trip times
        Duration patience = seconds(4);
    };

    void plan();
    void planFader(std::size_t phone, int number, double value);
    void planPress(int number, const std::string& what, Bytes (*press)(Strip),
                   std::function<std::string(const remote::StripPicture&)> shown, int port);
    void planVpot(int number, int clicks);
    void planHandOver();
    void next();
    void begin();
    void look(std::size_t phone);
    void giveUp(std::size_t step);
    void finish(bool succeeded);
    void sweep(int strip, double value, int movesLeft);
    std::string trackOn(int strip) const;
    SimulatorSnapshot::Strip hostStrip(int strip) const;

    Stage stage;
    std::vector<std::unique_ptr<remote::RemoteClient>> phones;
    std::vector<Step> steps;
    std::size_t current = 0;
    bool waiting = false;
    bool ended = false;
    TimePoint sentAt;
    std::vector<double> roundTrips; // milliseconds
};

} // namespace lumbrine
