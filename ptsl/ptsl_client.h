// The commands of Pro Tools' scripting service that the receiver uses: read the track list, and set mute, solo and
// input monitoring of tracks.
#pragma once

#include "base/bilingual.h"
#include "base/json_value.h"
#include "platform/api/json.h"
#include "platform/api/runtime.h"
#include "platform/api/stream_socket.h"
#include "ptsl/ptsl_envelope.h"
#include "ptsl/ptsl_error.h"
#include "ptsl/ptsl_track.h"
#include "ptsl/ptsl_wire.h"

#include <cstdint>
#include <expected>
#include <string>
#include <vector>

namespace lumbrine {

struct PTSLAddress {
    std::string host = "127.0.0.1"; // numeric
    std::uint16_t port = 31416;
};

// Not thread-safe: only one serial queue may call it. Every function blocks. When no service listens, a function
// returns at once; when a service does not answer, after 6 seconds.
//
// When a command fails in transport, it is sent once more over a new connection. So it may reach the service twice; all
// commands here are safe to repeat. A command takes at most 30 seconds, 60 when the client must register first, and a
// track list, which may have to register again, 120.
class PTSLClient {
public:
    template <typename Value>
    using Result = std::expected<Value, PTSLFailure>;

    // Connects at the first command. Everything passed by reference must outlive the client.
    PTSLClient(Runtime& runtime, StreamSockets& sockets, JSON& systemJSON, Bilingual bilingual, std::string company,
               std::string application, const PTSLAddress& service = {});

    // The first 1,000 tracks in the session's order. When the service refuses the command, as it does after a restart,
    // the client registers again and repeats it once.
    Result<std::vector<PTSLTrack>> trackList();

    // Tracks are named by their full names.
    Result<void> setMute(const std::vector<std::string>& trackNames, bool enabled);
    Result<void> setSolo(const std::vector<std::string>& trackNames, bool enabled);
    Result<void> setInputMonitor(const std::string& trackName, bool enabled);

private:
    Result<void> registerIfNeeded();
    Result<void> registerAnew();
    Result<void> set(PTSLCommand command, const std::vector<std::string>& trackNames, bool enabled);
    Result<JSONValue::Object> run(PTSLCommand command, const JSONValue::Object& body);
    std::expected<Bytes, PTSLError> callTwice(ByteView request);
    Result<JSONValue::Object> replyIn(const ResponseEnvelope& response);

    JSON& json;
    const Bilingual text;
    PTSLWire wire;
    std::string sessionID; // empty while not registered
    const std::string companyName;
    const std::string applicationName;
};

} // namespace lumbrine
