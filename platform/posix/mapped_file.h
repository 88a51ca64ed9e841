// A file of fixed size that stays mapped into memory, for what has to outlive the process however it ends.
#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <filesystem>
#include <memory>
#include <span>

namespace lumbrine {

// Every byte that is stored is the system's at once: it reaches the file even when the process is killed. Another
// process may read the file meanwhile.
class MappedFile {
public:
    enum class Problem {
        inUse,      // another program has it mapped
        noRoom,     // the disk has no room for it, or this user may not use more
        notWritten, // the file or its folder cannot be made or written
    };

    // Opens or creates the file and gives it exactly `size` bytes, a multiple of 4096, all of which the disk has room
    // for; the folders above it are created as well. An existing file of that size keeps its bytes, any other becomes
    // zeros. Only this user may read what is created.
    //
    // A process should have one at a time: only the newest is guarded against bytes that the disk loses.
    static std::expected<std::unique_ptr<MappedFile>, Problem> open(const std::filesystem::path& path,
                                                                    std::size_t size);
    ~MappedFile();
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    std::span<std::uint64_t> words() const { return content; }

    // True when the system could not keep what was stored, since the file was cut or the disk is full. The bytes are
    // then the process's own: storing goes on without harm, but nothing reaches the file.
    bool isLost() const;

    // Prepares the bytes from `offset` for being stored soon, and lets go of the memory for all the others, which stay
    // in the file. Stores need no work of the system then. May wait for the disk.
    void expectStores(std::size_t offset, std::size_t size);

private:
    MappedFile(int descriptor, std::span<std::uint64_t> mapped);

    const int fd;
    const std::span<std::uint64_t> content;
};

} // namespace lumbrine
