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
// A question (registering, the track list) that fails in transport is asked once more over a new connection, and so
// takes at most 30 seconds; a track list, which may have to register before it and again after it, takes four times as
// long. A setter is sent once: by the time of a repetition somebody may want the opposite.
class PTSLClient {
public:
    template <typename Value>
    using Result = std::expected<Value, PTSLFailure>;

    // Connects at the first command. Everything passed by reference must outlive the client.
    PTSLClient(Runtime& runtime, StreamSockets& sockets, JSON& json, Bilingual text, std::string companyName,
               std::string applicationName, const PTSLAddress& service = {});

    // Connects and registers where that has not been done yet, so that a setter that follows leaves at once.
    Result<void> prepare();

    // The first 1,000 tracks in the session's order. When the service no longer knows the client, as after a restart,
    // the client registers again and repeats the command once.
    Result<std::vector<PTSLTrack>> trackList();

    // Tracks are named by their full names. When the service no longer knows the client, the command fails with
    // PTSLRefusal::sessionID, and the next command registers again.
    Result<void> setMute(const std::vector<std::string>& trackNames, bool enabled);
    Result<void> setSolo(const std::vector<std::string>& trackNames, bool enabled);
    Result<void> setInputMonitor(const std::string& trackName, bool enabled);

private:
    Result<void> registerIfNeeded();
    Result<void> registerAnew();
    bool isForgotten(const PTSLFailure& failure);
    Result<void> set(PTSLCommand command, const std::vector<std::string>& trackNames, bool enabled);
    Result<JSONValue::Object> run(PTSLCommand command, const JSONValue::Object& body);
    std::expected<Bytes, PTSLError> call(ByteView request, int attempts);
    Result<JSONValue::Object> replyIn(PTSLCommand command, const ResponseEnvelope& response);
    PTSLError refusedWith(const std::string& errorJSON);
    void close();

    JSON& json;
    const Bilingual text;
    PTSLWire wire;
    std::uint64_t version = newestVersion;
    std::string sessionID;     // empty while not registered
    bool sessionIsNew = false; // registered on this connection, and no answer has shown since that it is known
    const std::string companyName;
    const std::string applicationName;
};

} // namespace lumbrine
