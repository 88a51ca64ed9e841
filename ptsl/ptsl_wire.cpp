#include "ptsl/ptsl_wire.h"

#include "ptsl/grpc_message.h"
#include "ptsl/hpack.h"
#include "ptsl/response_reader.h"

#include <array>
#include <cerrno>
#include <utility>

namespace lumbrine {

namespace {

constexpr std::size_t receiveSize = 16'384;

// RFC 9113, section 6.5.2: ENABLE_PUSH (2) = 0, and INITIAL_WINDOW_SIZE (4) = 8,388,608.
constexpr std::array<std::uint8_t, 12> ownSettings{0x00, 0x02, 0x00, 0x00, 0x00, 0x00,
                                                   0x00, 0x04, 0x00, 0x80, 0x00, 0x00};

bool isTimeout(int error) {
    return error == EAGAIN || error == EWOULDBLOCK; // NOLINT(misc-redundant-expression): different on some systems
}

} // namespace

PTSLWire::PTSLWire(Runtime& runtime, StreamSockets& sockets, Bilingual text, std::string host, std::uint16_t port,
                   double timeoutInSeconds)
    : runtime(runtime), sockets(sockets), text(text), host(std::move(host)), port(port), timeout(timeoutInSeconds) {}

PTSLWire::~PTSLWire() {
    close();
}

void PTSLWire::close() {
    if (fd >= 0) sockets.close(fd);
    fd = -1;
    rx.clear();
    nextStreamID = 1;
}

std::unexpected<PTSLError> PTSLWire::transportError(std::string_view english, std::string_view japanese,
                                                    int error) const {
    return std::unexpected(PTSLError::transport(text(english, japanese) + std::to_string(error)));
}

std::expected<void, PTSLError> PTSLWire::open() {
    close();
    if (auto connected = connectSocket(); !connected) {
        close();
        return connected;
    }
    return greet();
}

std::expected<void, PTSLError> PTSLWire::connectSocket() {
    fd = sockets.open();
    if (fd < 0) return std::unexpected(PTSLError::transport(text("socket() failed", "socket() 失敗")));
    const Duration wait = seconds(timeout);
    int result = sockets.connect(fd, host, port, wait);
    // Without time-outs a call could hang for ever, so the connection counts as failed.
    if (result >= 0) result = sockets.setReceiveTimeout(fd, wait);
    if (result >= 0) result = sockets.setSendTimeout(fd, wait);
    if (result == -ECONNREFUSED || result == -EHOSTUNREACH) return std::unexpected(PTSLError::notRunning());
    if (result < 0) return transportError("connect() failed errno=", "connect() 失敗 errno=", -result);
    receiveTimeout = wait;
    sendTimeout = wait;
    sockets.setNoDelay(fd);
    sockets.setNoSignal(fd);
    limit = runtime.now() + 2 * wait;
    return {};
}

std::expected<void, PTSLError> PTSLWire::greet() {
    Bytes greeting(http2::preface.begin(), http2::preface.end());
    append(greeting, writeFrame(http2::FrameType::settings, 0, 0, ownSettings));
    append(greeting, writeFrame(http2::FrameType::windowUpdate, 0, 0, be32(http2::windowSize)));
    return sendAll(greeting);
}

std::expected<Bytes, PTSLError> PTSLWire::call(std::string_view path, ByteView message) {
    if (fd < 0) {
        if (const auto opened = open(); !opened) return std::unexpected(opened.error());
    } else {
        limit = runtime.now() + 2 * seconds(timeout);
    }
    const std::uint32_t streamID = takeStreamID(nextStreamID);
    const Bytes headers = headerBlock(path, host + ":" + std::to_string(port));
    // All frames in one piece, so that the service wakes up once and finds the whole request.
    Bytes request = writeFrame(http2::FrameType::headers, http2::endHeaders, streamID, headers);
    append(request, writeBody(streamID, grpcMessage(message)));
    if (const auto sent = sendAll(request); !sent) return std::unexpected(sent.error());
    return readResponse(streamID);
}

std::expected<Bytes, PTSLError> PTSLWire::readResponse(std::uint32_t streamID) {
    const TimePoint deadline = runtime.now() + seconds(timeout);
    limit = deadline + seconds(timeout);
    ResponseReader response(streamID, text);
    Bytes answers; // to the frames received so far; sent together before the next wait
    for (;;) {
        const auto frame = rx.next();
        if (!frame) {
            if (const auto sent = sendAll(std::exchange(answers, {})); !sent) return std::unexpected(sent.error());
            if (const auto received = receiveMore(); !received) return std::unexpected(received.error());
            continue;
        }
        ResponseReader::Step step = response.take(*frame);
        append(answers, step.answer);
        if (!step.outcome && runtime.now() < deadline) continue;
        // The call is over, so the answers may wait for the next request.
        if (const auto sent = sendAll(answers, &StreamSockets::sendSoon); !sent) return std::unexpected(sent.error());
        return step.outcome ? *std::move(step.outcome) : std::unexpected(PTSLError::timedOut());
    }
}

// Sets the time-out of the next system call so that it ends at `limit`. Returns false when the limit is reached.
bool PTSLWire::mayWait(SetTimeout set, Duration& current) {
    const Duration left = limit - runtime.now();
    if (left <= Duration::zero()) return false;
    const Duration wanted = std::min(left, seconds(timeout));
    if (wanted == current) return true;
    if ((sockets.*set)(fd, wanted) < 0) return false;
    current = wanted;
    return true;
}

std::expected<void, PTSLError> PTSLWire::receiveMore() {
    std::array<std::uint8_t, receiveSize> buffer;
    for (;;) {
        if (!mayWait(&StreamSockets::setReceiveTimeout, receiveTimeout)) return std::unexpected(PTSLError::timedOut());
        const int received = sockets.receive(fd, buffer);
        if (received == 0) return std::unexpected(PTSLError::transport(text("connection lost", "接続が切れた")));
        if (received > 0) {
            rx.append(ByteView(buffer).first(static_cast<std::size_t>(received)));
            return {};
        }
        if (isTimeout(-received)) return std::unexpected(PTSLError::timedOut());
        if (received != -EINTR) return transportError("recv failed errno=", "recv 失敗 errno=", -received);
    }
}

std::expected<void, PTSLError> PTSLWire::sendAll(ByteView bytes, Send send) {
    while (!bytes.empty()) {
        if (!mayWait(&StreamSockets::setSendTimeout, sendTimeout)) return std::unexpected(PTSLError::timedOut());
        const int sent = (sockets.*send)(fd, bytes);
        if (sent > 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(sent));
            continue;
        }
        if (isTimeout(-sent)) return std::unexpected(PTSLError::timedOut());
        if (sent != -EINTR) return transportError("send failed errno=", "send 失敗 errno=", -sent);
    }
    return {};
}

} // namespace lumbrine
