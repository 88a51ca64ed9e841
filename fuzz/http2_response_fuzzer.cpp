// The input is an HTTP/2 response in pieces: a length byte before each piece, the last piece cut short by the end of
// the input. The pieces and the whole must give the same answers and the same outcome.
#include "fuzz/require.h"
#include "ptsl/response_reader.h"

#include <algorithm>

namespace {

using namespace lumbrine;

struct Played {
    std::vector<Bytes> answers;
    std::optional<std::expected<Bytes, PTSLError>> outcome;

    bool operator==(const Played&) const = default;
};

class Player {
public:
    void play(ByteView piece) {
        received += piece.size();
        frames.append(piece);
        // The buffer must grow with the bytes received, never with the lengths that frame headers claim.
        require(frames.size() <= received && frames.capacity() <= 2 * received + 65'536);
        while (!played.outcome) {
            const auto frame = frames.next();
            if (!frame) break;
            auto step = reader.take(*frame);
            // Answers: a WINDOW_UPDATE (4 bytes) to DATA, an empty SETTINGS acknowledgement, a PING's payload sent
            // back.
            require(step.answer.empty() ||
                    step.answer.size() == 9 + (frame->type == http2::FrameType::data       ? 4
                                               : frame->type == http2::FrameType::settings ? 0
                                                                                           : frame->payload.size()));
            if (!step.answer.empty()) played.answers.push_back(std::move(step.answer));
            played.outcome = std::move(step.outcome);
        }
    }

    Played played;

private:
    FrameReader frames;
    ResponseReader reader{1, Bilingual(false)};
    std::size_t received = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Player inPieces;
    Bytes whole;
    for (ByteView rest(data, size); !rest.empty();) {
        const std::size_t length = std::min<std::size_t>(rest[0], rest.size() - 1);
        const Bytes piece(rest.begin() + 1, rest.begin() + 1 + static_cast<std::ptrdiff_t>(length));
        inPieces.play(piece);
        whole.insert(whole.end(), piece.begin(), piece.end());
        rest = rest.subspan(1 + length);
    }
    Player atOnce;
    atOnce.play(whole);
    require(atOnce.played == inPieces.played);
    return 0;
}
