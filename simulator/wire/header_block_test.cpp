#include "simulator/wire/header_block.h"

namespace lumbrine::wire {
namespace {

using testing::ElementsAre;

Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

TEST(HeaderBlock, IsDecodedFromIndexedAndLiteralFields) {
    const Bytes block = bytesOf("\x83\x86"               // POST, http
                                "\x04\x02/a"             // :path by its static index
                                "\x0F\x10\x10"           // content-type by its static index, 31
                                "application/grpc"       //
                                "\x40\x02te\x08trailers" // with indexing, and a name of its own
                                "\x10\x01x\x01y"         // never indexed
                                "\x3F\xE1\x1F");         // the dynamic table has 4096 bytes
    const auto headers = decodeHeaders(block);
    ASSERT_TRUE(headers);
    EXPECT_THAT(*headers,
                ElementsAre(Header{":method", "POST"}, Header{":scheme", "http"}, Header{":path", "/a"},
                            Header{"content-type", "application/grpc"}, Header{"te", "trailers"}, Header{"x", "y"}));
}

TEST(HeaderBlock, HoldsTextsOfAnyLength) {
    for (const std::size_t length : {0UL, 126UL, 127UL, 128UL, 300UL, 20'000UL}) {
        Bytes block{0x04};
        if (length < 127) {
            block.push_back(static_cast<std::uint8_t>(length));
        } else {
            block.push_back(0x7F);
            std::size_t rest = length - 127;
            for (; rest >= 128; rest >>= 7)
                block.push_back(static_cast<std::uint8_t>(rest | 0x80));
            block.push_back(static_cast<std::uint8_t>(rest));
        }
        block.insert(block.end(), length, 'a');
        const auto headers = decodeHeaders(block);
        ASSERT_TRUE(headers) << length;
        EXPECT_EQ(headers->front().value.size(), length);
    }
}

TEST(HeaderBlock, IsRefusedWhereItIsMalformedOrNeedsWhatIsNotKept) {
    const std::map<std::string, Bytes> blocks{
        {"index 0", {0x80}},
        {"an entry of the dynamic table", {0xBE}},
        {"an entry without a value", {0x81}},
        {"a literal's name from the dynamic table", {0x7E, 0x01, 'a'}},
        {"Huffman coding", {0x04, 0x81, 0x1F}},
        {"no value", {0x04}},
        {"a value that is cut off", {0x04, 0x02, 'a'}},
        {"a name that is cut off", {0x00, 0x02, 'a'}},
        {"a name without a value", {0x00, 0x01, 'a'}},
        {"an integer that is cut off", {0x0F}},
        {"an integer that goes on", {0x0F, 0x80, 0x80}},
        {"an integer that does not end", {0x0F, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x80, 0x01, 'a'}},
        {"a table size that is cut off", {0x3F}},
    };
    for (const auto& [what, block] : blocks)
        EXPECT_FALSE(decodeHeaders(block)) << what;
}

TEST(HeaderBlock, OfAResponseIsStatusAndContentType) {
    EXPECT_EQ(responseHeaders(), bytesOf("\x88\x0F\x10\x10"
                                         "application/grpc"));
}

TEST(HeaderBlock, OfTrailersIsTheStatusOfTheCall) {
    using namespace std::string_view_literals;
    EXPECT_EQ(trailers(0, ""), bytesOf("\x00\x0Bgrpc-status\x01\x30"sv));
    EXPECT_EQ(trailers(12, "no"), bytesOf("\x00\x0Bgrpc-status\x02\x31\x32\x00\x0Cgrpc-message\x02no"sv));
}

} // namespace
} // namespace lumbrine::wire
