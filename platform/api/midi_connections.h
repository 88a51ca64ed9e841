// The other side of virtual MIDI ports: connects to the pair of ports that another program has created under one name.
// The simulated Pro Tools plays through it.
#pragma once

#include "base/bytes.h"

#include <functional>
#include <memory>
#include <string>

namespace lumbrine {

// A connection to the source and the destination of one name. It connects whenever ports of that name appear, and
// reconnects when they come back. Destroying it disconnects; no callback runs afterwards.
class MIDIConnection {
public:
    virtual ~MIDIConnection() = default;

    // Sends one message to the destination. While nothing is connected, the message is dropped. Any thread.
    virtual void send(ByteView message) = 0;

    // True while both ports are there and connected.
    virtual bool connected() const = 0;
};

class MIDIConnections {
public:
    virtual ~MIDIConnections() = default;

    // Calls `incoming` with the bytes of each packet from the source, in order, on a thread of the back end. Null when
    // the system has no MIDI service.
    virtual std::unique_ptr<MIDIConnection> connect(const std::string& portName,
                                                    std::function<void(ByteView)> incoming) = 0;
};

} // namespace lumbrine
