// Pro Tools' scripting service as the receiver uses it: the track list, and mute, solo and input monitoring of tracks.
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

// Not thread-safe: one serial queue calls it. Every function blocks: a service that is not there is told at once, a
// silent one after 6 seconds. A command that fails in transport is sent once more over a new connection, so it may
// reach the service twice; all of them are safe to repeat. A command lasts 30 seconds at most, with registering 60; a
// track list, which may have to register anew, 120.
class PTSLClient {
public:
    template <typename Value>
    using Result = std::expected<Value, PTSLFailure>;

    // Nothing is connected before the first command. Everything passed by reference outlives the client.
    PTSLClient(Runtime& runtime, StreamSockets& sockets, JSON& systemJSON, Bilingual bilingual, std::string company,
               std::string application, const PTSLAddress& service = {});

    // In the session's order; no more than 1,000 are asked for. Registers anew when the service no longer knows the
    // session.
    Result<std::vector<PTSLTrack>> trackList();

    // Tracks by their full names.
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
