#include "client_link/client_command.h"
#include "client_link/testing/served_peers.h"

#include <cstdlib>
#include <new>

namespace {

thread_local int allocations = 0; // by this thread, ever

} // namespace

void* operator new(std::size_t size) {
    ++allocations;
    if (void* const block = std::malloc(size == 0 ? 1 : size)) return block;
    throw std::bad_alloc();
}

void operator delete(void* block) noexcept {
    std::free(block); // NOLINT(clang-analyzer-cplusplus.NewDelete): this is the delete
}

void operator delete(void* block, std::size_t) noexcept {
    std::free(block); // NOLINT(clang-analyzer-cplusplus.NewDelete): this is the delete
}

namespace lumbrine {
namespace {

const std::string phone = "::ffff:192.168.1.20:50000";

TEST(UDPServerAllocation, IsSeenByThisTest) {
    const int before = allocations;
    const Bytes some(100);
    EXPECT_EQ(allocations, before + 1);
}

TEST(UDPServerAllocation, DeliversAndReadsTheOwnersFaderMovesWithoutOne) {
    ServedPeers peers;
    int moves = 0;
    peers.server.onDatagram = [&moves](ByteView bytes, std::string_view) {
        const auto command = parseClientCommand(bytes);
        if (command && std::holds_alternative<FaderMove>(*command)) ++moves;
    };
    const Bytes move{0x01, 0x01, 0x03, 0x3F, 0xFF};
    const PeerAddress address = peerAt(phone);
    peers.server.handleDatagram(move, address);

    const int before = allocations;
    for (int i = 0; i < 1000; ++i)
        peers.server.handleDatagram(move, address);
    EXPECT_EQ(allocations, before);
    EXPECT_EQ(moves, 1001);
}

TEST(UDPServerAllocation, NamesPeersThatTakeTurnsWithoutOne) {
    ServedPeers peers;
    peers.server.onDatagram = nullptr;
    const Bytes move{0x01, 0x01, 0x03, 0x3F, 0xFF};
    const Bytes takeOver{0x01, 0x25};
    const PeerAddress one = peerAt(phone);
    const PeerAddress other = peerAt("::ffff:192.168.1.30:50000");
    for (int i = 0; i < 2; ++i) {
        peers.server.handleDatagram(takeOver, one);
        peers.server.handleDatagram(takeOver, other);
    }
    const int before = allocations;
    for (int i = 0; i < 1000; ++i) {
        peers.server.handleDatagram(takeOver, one);
        peers.server.handleDatagram(takeOver, other);
    }
    EXPECT_EQ(allocations, before);
}

} // namespace
} // namespace lumbrine
