#include "base/testing/segmentations.h"
#include "simulator/testing/grpc_conversation.h"
#include "simulator/wire/fault_filter.h"

namespace lumbrine::wire {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint8_t lastHeaders = NGHTTP2_FLAG_END_HEADERS | NGHTTP2_FLAG_END_STREAM;

class FaultFilterTest : public testing::Test {
protected:
    // The faults of the calls in order; calls after them have none.
    void begin(std::vector<WireFault> calls) {
        fates = std::move(calls);
        filter.fromClient(greeting());
    }

    // Passes these bytes of the service, and describes what the client and the service receive.
    FaultFilter::End pass(const Bytes& bytes) {
        const FaultFilter::Passed passed = filter.fromService(bytes);
        toClient = client.told(passed.toClient);
        toService = service.told(passed.toService);
        return passed.end;
    }

    std::vector<WireFault> fates;
    std::size_t drawn = 0;
    Listener client, service;
    std::vector<std::string> toClient, toService;
    FaultFilter filter{[this] { return drawn < fates.size() ? fates[drawn++] : WireFault::none; }};
};

// Headers, data and trailers of an answer. The filter does not read headers.
Bytes replyBytes(std::uint32_t stream) {
    Bytes bytes = frameBytes(NGHTTP2_HEADERS, NGHTTP2_FLAG_END_HEADERS, stream, {0x88});
    append(bytes, frameBytes(NGHTTP2_DATA, 0, stream, grpcMessage("hello")));
    append(bytes, frameBytes(NGHTTP2_HEADERS, lastHeaders, stream, {0x88}));
    return bytes;
}

TEST_F(FaultFilterTest, PassesEverythingOnHoweverItArrives) {
    Bytes client = greeting(settingOf(NGHTTP2_SETTINGS_INITIAL_WINDOW_SIZE, 9));
    append(client, callBytes(1, "hello"));
    Bytes expected = greeting([] {
        Bytes both = settingOf(NGHTTP2_SETTINGS_INITIAL_WINDOW_SIZE, 9);
        append(both, settingOf(NGHTTP2_SETTINGS_HEADER_TABLE_SIZE, 0));
        return both;
    }());
    append(expected, callBytes(1, "hello"));
    Bytes service = frameBytes(NGHTTP2_SETTINGS, 0, 0);
    append(service, replyBytes(1));

    for (const auto& parts : segmentationsOf(client)) {
        FaultFilter fresh([] { return WireFault::none; });
        Bytes passed;
        for (const Bytes& part : parts)
            append(passed, fresh.fromClient(part));
        EXPECT_EQ(passed, expected);
    }
    for (const auto& parts : segmentationsOf(service)) {
        FaultFilter fresh([] { return WireFault::none; });
        Bytes passed;
        for (const Bytes& part : parts)
            append(passed, fresh.fromService(part).toClient);
        EXPECT_EQ(passed, service);
    }
}

TEST_F(FaultFilterTest, PassesOnWhatIsNoHTTP2) {
    const std::string text = "PRI * HTTP/1.1\r\n\r\n";
    const Bytes bytes(text.begin(), text.end());
    for (const auto& parts : segmentationsOf(bytes)) {
        FaultFilter fresh([] { return WireFault::reset; });
        Bytes passed;
        for (const Bytes& part : parts)
            append(passed, fresh.fromClient(part));
        EXPECT_EQ(passed, bytes);
        EXPECT_EQ(fresh.fromService(bytes).toClient, bytes);
    }
}

TEST_F(FaultFilterTest, ResetsACallInThePlaceOfItsReply) {
    begin({WireFault::none, WireFault::reset, WireFault::none});
    filter.fromClient(callBytes(1, "a"));
    filter.fromClient(callBytes(3, "b"));
    filter.fromClient(callBytes(5, "c"));
    EXPECT_EQ(filter.fromService(replyBytes(1)).toClient, replyBytes(1));
    EXPECT_EQ(pass(replyBytes(3)), FaultFilter::End::none);
    EXPECT_THAT(toClient, ElementsAre("RST_STREAM 3 00000002"));
    // The service is told, and gets back the room that the client will not give it.
    EXPECT_THAT(toService, ElementsAre("RST_STREAM 3 00000002", "WINDOW_UPDATE 0000000a"));
    EXPECT_EQ(filter.fromService(replyBytes(5)).toClient, replyBytes(5));
}

TEST_F(FaultFilterTest, LetsWindowUpdatesOfAFaultyCallThrough) {
    begin({WireFault::reset});
    filter.fromClient(callBytes(1, "a"));
    const Bytes update = frameBytes(NGHTTP2_WINDOW_UPDATE, 0, 1, bigEndian32(5));
    EXPECT_EQ(filter.fromService(update).toClient, update);
    pass(replyBytes(1));
    EXPECT_THAT(toClient, ElementsAre("RST_STREAM 1 00000002"));
}

TEST_F(FaultFilterTest, EndsTheConnectionInOrder) {
    begin({WireFault::goAway});
    filter.fromClient(callBytes(1, "a"));
    EXPECT_EQ(pass(replyBytes(1)), FaultFilter::End::finish);
    EXPECT_THAT(toClient, ElementsAre("GOAWAY 0000000100000000"));
    EXPECT_THAT(filter.fromService(replyBytes(1)).toClient, IsEmpty());
}

TEST_F(FaultFilterTest, LetsTheServiceDie) {
    begin({WireFault::die});
    filter.fromClient(callBytes(1, "a"));
    Bytes output = frameBytes(NGHTTP2_PING, 0, 0, Bytes(8));
    append(output, replyBytes(1));
    EXPECT_EQ(pass(output), FaultFilter::End::die);
    EXPECT_THAT(toClient, ElementsAre("PING 0000000000000000"));
    EXPECT_THAT(filter.fromService(replyBytes(3)).toClient, IsEmpty());
}

TEST_F(FaultFilterTest, DrawsOnceForACall) {
    begin({WireFault::none, WireFault::reset});
    filter.fromClient(frameBytes(NGHTTP2_HEADERS, NGHTTP2_FLAG_END_HEADERS, 1, requestBlock()));
    filter.fromClient(frameBytes(NGHTTP2_HEADERS, lastHeaders, 1)); // its trailers
    EXPECT_EQ(drawn, 1u);
    filter.fromClient(callBytes(3, "b"));
    EXPECT_EQ(drawn, 2u);
}

} // namespace
} // namespace lumbrine::wire
