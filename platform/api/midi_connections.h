// The other side of virtual MIDI ports: connecting to the pair of ports that some program has made under a name. What
// the simulated Pro Tools plays through.
#pragma once

#include "base/bytes.h"

#include <functional>
#include <memory>
#include <string>

namespace lumbrine {

// A connection to the source and the destination of one name. It connects by itself whenever ports of that name are
// there, and again after they were gone. Destroying it disconnects; no callback runs afterwards.
class MIDIConnection {
public:
    virtual ~MIDIConnection() = default;

    // To the destination of that name. Any thread; dropped while nothing is connected.
    virtual void send(ByteView message) = 0;

    // True while both ports are there and connected.
    virtual bool connected() const = 0;
};

class MIDIConnections {
public:
    virtual ~MIDIConnections() = default;

    // `incoming` gets the bytes of each packet that the source sends, in order, on a thread of the back end's.
    // Null when the system has no MIDI service at all.
    virtual std::unique_ptr<MIDIConnection> connect(const std::string& portName,
                                                    std::function<void(ByteView)> incoming) = 0;
};

} // namespace lumbrine
