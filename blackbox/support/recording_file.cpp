#include "blackbox/support/recording_file.h"

#include "blackbox/format.h"
#include "blackbox/ring_header.h"

#include <zstd.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <memory>
#include <optional>
#include <system_error>

namespace lumbrine::blackbox {

namespace {

constexpr std::array<std::uint8_t, 4> zstdMagic{0x28, 0xB5, 0x2F, 0xFD};
constexpr std::size_t largestFile = largestRing + headerSize;
constexpr int compressionLevel = 9; // of 16 MiB in half a second

std::optional<Bytes> bytesOfFile(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    if (!stream) return std::nullopt;
    Bytes bytes;
    std::array<char, 65536> piece{};
    while (stream.read(piece.data(), piece.size()) || stream.gcount() > 0) {
        bytes.insert(bytes.end(), piece.begin(), piece.begin() + stream.gcount());
        if (bytes.size() > largestFile) return std::nullopt;
    }
    return bytes;
}

// What a cut or damaged copy has up to the damage.
Bytes decompressed(ByteView compressed) {
    const std::unique_ptr<ZSTD_DStream, decltype(&ZSTD_freeDStream)> stream(ZSTD_createDStream(), ZSTD_freeDStream);
    Bytes bytes;
    Bytes piece(ZSTD_DStreamOutSize());
    ZSTD_inBuffer in{compressed.data(), compressed.size(), 0};
    while (bytes.size() < largestFile) {
        ZSTD_outBuffer out{piece.data(), piece.size(), 0};
        const std::size_t before = in.pos;
        const std::size_t result = ZSTD_decompressStream(stream.get(), &out, &in);
        if (ZSTD_isError(result) != 0) break;
        append(bytes, ByteView(piece).first(out.pos));
        if (result == 0 || (out.pos == 0 && in.pos == before)) break;
    }
    return bytes;
}

} // namespace

std::expected<Bytes, std::string> loadRecording(const std::filesystem::path& path) {
    auto bytes = bytesOfFile(path);
    if (!bytes) return std::unexpected("cannot be read");
    if (bytes->size() >= zstdMagic.size() && std::equal(zstdMagic.begin(), zstdMagic.end(), bytes->begin()))
        *bytes = decompressed(*bytes);
    if (!readHeader(*bytes)) return std::unexpected("is no recording");
    return *std::move(bytes);
}

std::expected<void, std::string> saveRecording(const std::filesystem::path& path, ByteView ring) {
    Bytes compressed(ZSTD_compressBound(ring.size()));
    const std::size_t size =
        ZSTD_compress(compressed.data(), compressed.size(), ring.data(), ring.size(), compressionLevel);
    if (ZSTD_isError(size) != 0) return std::unexpected("cannot be compressed");
    return writePrivately(path, ByteView(compressed).first(size));
}

std::expected<void, std::string> writePrivately(const std::filesystem::path& path, ByteView bytes) {
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    std::error_code error; // another file system may have no modes
    std::filesystem::permissions(path, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write, error);
    stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!stream.flush()) return std::unexpected("cannot be written");
    return {};
}

} // namespace lumbrine::blackbox
