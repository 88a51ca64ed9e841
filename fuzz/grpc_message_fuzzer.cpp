// The input serves twice: as the body of a gRPC response to unframe, and as a message that must survive framing and
// unframing.
#include "fuzz/require.h"
#include "ptsl/grpc_message.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace lumbrine;
    const Bytes body(data, data + size);
    const auto message = unframe(body, Bilingual(false));
    if (message) {
        require(size >= 5 && body[0] == 0 && message->size() <= size - 5);
        require(std::ranges::equal(*message, ByteView(body).subspan(5, message->size())));
    } else {
        require(message.error().kind == PTSLError::Case::malformedResponse && !message.error().detail.empty());
    }
    require(unframe(grpcMessage(body), Bilingual(false)) == body);
    return 0;
}
