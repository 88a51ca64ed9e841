// For tests: a console connected to a scripted receiver, and functions that press keys.
#pragma once

#include "platform/virtual/virtual_network.h"
#include "platform/virtual/virtual_runtime.h"
#include "remote/terminal_console.h"
#include "remote/testing/scripted_receiver.h"
#include "remote/testing/wire_samples.h"

#include <gtest/gtest.h>

#include <vector>

namespace lumbrine::remote {

using Sent = std::vector<Bytes>;

inline Key key(char character) {
    return {SpecialKey::none, character};
}

inline Key key(SpecialKey special) {
    return {special};
}

class ConsoleTest : public ::testing::Test {
protected:
    ConsoleTest() {
        client.connect("192.168.1.2", 52700);
        runtime.runUntilIdle();
        say(pong);
        receiver.taken();
    }

    void say(const Bytes& datagram) {
        receiver.send(datagram);
        runtime.runUntilIdle();
    }

    template <typename... Keys>
    Sent sentFor(Keys... keys) {
        (console.press(key(keys)), ...);
        runtime.runUntilIdle();
        return receiver.taken();
    }

    VirtualRuntime runtime;
    VirtualNetwork network{runtime};
    ScriptedReceiver receiver{runtime, network.host("192.168.1.2"), 52700};
    RemoteClient client{runtime, network.host("192.168.1.7")};
    int quits = 0;
    TerminalConsole console{runtime, client, Bilingual(false), [this] { ++quits; }};
};

} // namespace lumbrine::remote
