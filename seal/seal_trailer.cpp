#include "seal/seal_trailer.h"

#include "base/big_endian.h"

#include <algorithm>
#include <cassert>

namespace lumbrine::seal {

namespace {

// FF is in no UTF-8 text, so no name at the end of a message looks like it.
constexpr std::array<std::uint8_t, 3> mark{0xFF, 0x5E, 0xA1};

constexpr std::size_t shortestMessage = 2;
constexpr std::size_t sequenceAt = 4;
constexpr std::size_t sealAt = 8;

} // namespace

std::optional<Sealed> splitTrailer(ByteView datagram) {
    if (datagram.size() < shortestMessage + trailerSize) return std::nullopt;
    const ByteView end = datagram.last(trailerSize);
    if (!std::ranges::equal(end.first(mark.size()), mark)) return std::nullopt;
    Sealed sealed{.message = datagram.first(datagram.size() - trailerSize), .trailer = {}};
    sealed.trailer.keyNumber = end[mark.size()];
    sealed.trailer.sequence = Sequence::of(readBigEndian32(end, sequenceAt));
    std::ranges::copy(end.subspan(sealAt), sealed.trailer.seal.begin());
    return sealed;
}

ByteView messageOf(ByteView datagram) {
    const auto sealed = splitTrailer(datagram);
    return sealed ? sealed->message : datagram;
}

Seal sealOf(KeyedHash& key, Direction direction, std::uint64_t token, Sequence sequence, ByteView message) {
    std::array<std::uint8_t, 13> header{static_cast<std::uint8_t>(direction)};
    writeBigEndian64(header, 1, token);
    writeBigEndian32(header, 9, sequence.word());
    const Hash hash = key.of(header, message);
    Seal seal;
    std::copy_n(hash.begin(), seal.size(), seal.begin());
    return seal;
}

bool isRight(const Sealed& sealed, KeyedHash& key, Direction direction, std::uint64_t token) {
    const Seal right = sealOf(key, direction, token, sealed.trailer.sequence, sealed.message);
    unsigned difference = 0;
    for (std::size_t i = 0; i < right.size(); ++i)
        difference |= static_cast<unsigned>(right[i] ^ sealed.trailer.seal[i]);
    return difference == 0;
}

void SealedDatagram::make(ByteView message, KeyedHash& key, std::uint8_t keyNumber, Direction direction,
                          std::uint64_t token, Sequence sequence) {
    assert(message.size() <= maxMessage);
    const Seal seal = sealOf(key, direction, token, sequence, message);
    size = message.size() + trailerSize;
    const auto end = std::ranges::copy(message, storage.begin()).out;
    const std::span<std::uint8_t> trailer(end, trailerSize);
    std::ranges::copy(mark, trailer.begin());
    trailer[mark.size()] = keyNumber;
    writeBigEndian32(trailer, sequenceAt, sequence.word());
    std::ranges::copy(seal, trailer.begin() + sealAt);
}

} // namespace lumbrine::seal
