#include "simulator/wire/fault_filter.h"

#include <algorithm>
#include <utility>

namespace lumbrine::wire {

namespace {

void appendNoHeaderTable(Bytes& settings) {
    settings.push_back(0);
    settings.push_back(static_cast<std::uint8_t>(Setting::headerTableSize));
    appendBigEndian32(settings, 0);
}

Bytes codeOf(ErrorCode error) {
    Bytes payload;
    appendBigEndian32(payload, static_cast<std::uint32_t>(error));
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
    if (frame.is(FrameType::settings) && !frame.has(flag::ack) && !std::exchange(settingsSeen, true))
        appendNoHeaderTable(frame.payload);
    if (!frame.is(FrameType::headers) || frame.stream <= lastStream) return;
    lastStream = frame.stream;
    const WireFault fate = fateOfCall();
    if (fate != WireFault::none) faults[frame.stream] = fate;
}

// The service gets back the room in the connection's window that the client will not give it.
void FaultFilter::swallow(const Frame& frame, Passed& passed) {
    if (!frame.is(FrameType::data) || frame.payload.empty()) return;
    Bytes increment;
    appendBigEndian32(increment, static_cast<std::uint32_t>(frame.payload.size()));
    appendFrame(passed.toService, makeFrame(FrameType::windowUpdate, 0, 0, std::move(increment)));
}

FaultFilter::Passed FaultFilter::fromService(ByteView bytes) {
    if (ended) return {};
    if (!speaksHTTP2) return {{bytes.begin(), bytes.end()}};
    Passed passed;
    fromServiceCutter.add(bytes);
    while (const auto frame = fromServiceCutter.next()) {
        const auto found = faults.find(frame->stream);
        if (found == faults.end() || frame->is(FrameType::windowUpdate)) {
            appendFrame(passed.toClient, *frame);
            continue;
        }
        swallow(*frame, passed);
        switch (std::exchange(found->second, WireFault::none)) {
        case WireFault::none: // it has happened
            continue;
        case WireFault::reset: {
            const Frame reset = makeFrame(FrameType::rstStream, 0, frame->stream, codeOf(ErrorCode::internalError));
            appendFrame(passed.toClient, reset);
            appendFrame(passed.toService, reset);
            continue;
        }
        case WireFault::goAway: {
            Bytes payload;
            appendBigEndian32(payload, frame->stream);
            appendBigEndian32(payload, static_cast<std::uint32_t>(ErrorCode::noError));
            appendFrame(passed.toClient, makeFrame(FrameType::goAway, 0, 0, std::move(payload)));
            passed.end = End::finish;
            break;
        }
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
