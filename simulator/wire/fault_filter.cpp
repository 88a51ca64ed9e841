#include "simulator/wire/fault_filter.h"

#include <nghttp2/nghttp2.h>

#include <algorithm>
#include <initializer_list>
#include <string_view>
#include <utility>

namespace lumbrine::wire {

namespace {

constexpr std::string_view preface = NGHTTP2_CLIENT_MAGIC;

void appendNoHeaderTable(Bytes& settings) {
    settings.push_back(0);
    settings.push_back(NGHTTP2_SETTINGS_HEADER_TABLE_SIZE);
    appendBigEndian32(settings, 0);
}

Bytes bigEndian(std::initializer_list<std::uint32_t> numbers) {
    Bytes payload;
    for (const std::uint32_t number : numbers)
        appendBigEndian32(payload, number);
    return payload;
}

} // namespace

Bytes FaultFilter::fromClient(ByteView bytes) {
    Bytes passed;
    const std::size_t missing = std::min(preface.size() - prefaceSoFar.size(), bytes.size());
    for (const std::uint8_t byte : bytes.first(missing)) {
        speaksHTTP2 = speaksHTTP2 && byte == static_cast<std::uint8_t>(preface[prefaceSoFar.size()]);
        prefaceSoFar.push_back(byte);
        passed.push_back(byte);
    }
    if (!speaksHTTP2) {
        passed.insert(passed.end(), bytes.begin() + static_cast<std::ptrdiff_t>(missing), bytes.end());
        return passed;
    }
    fromClientCutter.add(bytes.subspan(missing));
    while (auto frame = fromClientCutter.next()) {
        lookAt(*frame);
        appendFrame(passed, *frame);
    }
    return passed;
}

void FaultFilter::lookAt(Frame& frame) {
    if (frame.type == NGHTTP2_SETTINGS && !frame.has(NGHTTP2_FLAG_ACK) && !std::exchange(settingsSeen, true))
        appendNoHeaderTable(frame.payload);
    if (frame.type != NGHTTP2_HEADERS || frame.stream <= lastStream) return;
    lastStream = frame.stream;
    const WireFault fate = fateOfCall();
    if (fate != WireFault::none) faults[frame.stream] = fate;
}

// The client never sees a swallowed frame, so it cannot enlarge the connection's window again. This does it instead.
void FaultFilter::swallow(const Frame& frame, Passed& passed) {
    if (frame.type != NGHTTP2_DATA || frame.payload.empty()) return;
    const auto length = static_cast<std::uint32_t>(frame.payload.size());
    appendFrame(passed.toService, {NGHTTP2_WINDOW_UPDATE, NGHTTP2_FLAG_NONE, 0, bigEndian({length})});
}

FaultFilter::Passed FaultFilter::fromService(ByteView bytes) {
    if (ended) return {};
    if (!speaksHTTP2) return {{bytes.begin(), bytes.end()}};
    Passed passed;
    fromServiceCutter.add(bytes);
    while (const auto frame = fromServiceCutter.next()) {
        const auto found = faults.find(frame->stream);
        if (found == faults.end() || frame->type == NGHTTP2_WINDOW_UPDATE) {
            appendFrame(passed.toClient, *frame);
            continue;
        }
        swallow(*frame, passed);
        switch (std::exchange(found->second, WireFault::none)) {
        case WireFault::none: // the fault has already happened
            continue;
        case WireFault::reset: {
            const Frame reset{NGHTTP2_RST_STREAM, NGHTTP2_FLAG_NONE, frame->stream,
                              bigEndian({NGHTTP2_INTERNAL_ERROR})};
            appendFrame(passed.toClient, reset);
            appendFrame(passed.toService, reset);
            continue;
        }
        case WireFault::goAway:
            appendFrame(passed.toClient,
                        {NGHTTP2_GOAWAY, NGHTTP2_FLAG_NONE, 0, bigEndian({frame->stream, NGHTTP2_NO_ERROR})});
            passed.end = End::finish;
            break;
        case WireFault::die:
            passed.end = End::die;
            break;
        }
        ended = true;
        return passed;
    }
    return passed;
}

} // namespace lumbrine::wire
