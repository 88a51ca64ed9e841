// The input is read as a reply envelope with JSON in it, and the JSON as a track list. An input that is no envelope is
// read as the JSON.
#include "base/utf8.h"
#include "fuzz/require.h"
#include "platform/portable/nlohmann_json.h"
#include "ptsl/ptsl_envelope.h"
#include "ptsl/ptsl_track.h"

namespace {

using namespace lumbrine;

void readReply(const std::string& text) {
    NlohmannJSON json{Bilingual(false)};
    const auto document = json.parse(text);
    require(document ? text.find('\0') == std::string::npos : !document.error().text.empty());
    const auto* const reply = document ? document->as<JSONValue::Object>() : nullptr;
    if (reply == nullptr) return;
    for (const PTSLTrack& track : tracksFrom(*reply))
        require(isUTF8(track.name));
    const auto written = json.serialise(*reply);
    require(written.has_value());
    require(json.parse(*written) == *document);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto response = responseEnvelope(Bytes(data, data + size), Bilingual(false));
    if (response) {
        require(isUTF8(response->replyJSON) && isUTF8(response->errorJSON));
        readReply(response->replyJSON);
    } else {
        readReply(repairedUTF8({reinterpret_cast<const char*>(data), size}));
    }
    return 0;
}
