#include "tools/replay/played_streams.h"

#include "blackbox/payload.h"

#include <algorithm>
#include <cerrno>

namespace lumbrine::blackbox {

namespace {

bool isEvent(const Record& record, StreamEvent event) {
    const auto head = record.kind == Kind::stream ? headOf<StreamHead>(record) : std::nullopt;
    return head && head->event == event;
}

Lane::Wanted ofConnection(int fd, Kind bytes, StreamEvent failure) {
    return [=](const Record& record) {
        return record.channel == static_cast<std::uint8_t>(fd) && (record.kind == bytes || isEvent(record, failure));
    };
}

Lane& laneOf(std::map<int, Lane>& lanes, int fd, const std::vector<Record>& records, Kind bytes, StreamEvent failure) {
    return lanes.try_emplace(fd, records, ofConnection(fd, bytes, failure)).first->second;
}

} // namespace

PlayedStreams::PlayedStreams(const std::vector<Record>& itsRecords, TapeClock& itsClock)
    : records(itsRecords), clock(itsClock),
      connections(records, [](const Record& record) { return isEvent(record, StreamEvent::connected); }) {}

// The number that the next connection of the recording has.
int PlayedStreams::open() {
    const Record* const next = connections.front();
    return next == nullptr ? 4 : next->channel;
}

int PlayedStreams::connect(int, const std::string&, std::uint16_t, Duration) {
    const Record* const made = connections.take();
    if (made == nullptr) {
        clock.waitForEnd();
        return -ESHUTDOWN;
    }
    return clock.waitFor(*made) ? headOf<StreamHead>(*made)->result : -ESHUTDOWN;
}

int PlayedStreams::failure(const Record* record) {
    if (record == nullptr) clock.waitForEnd();
    if (record == nullptr || !clock.waitFor(*record)) return -ESHUTDOWN;
    return headOf<StreamHead>(*record)->result;
}

int PlayedStreams::send(int fd, ByteView bytes) {
    Lane& lane = laneOf(departures, fd, records, Kind::streamOut, StreamEvent::sendFailed);
    const Record* first = lane.take();
    if (first == nullptr || first->kind == Kind::stream) return failure(first);
    // One call may have taken several records; the system may have taken only some of its bytes.
    std::size_t taken = first->payload.size();
    const Record* last = first;
    while (last->payload.size() == largestPayload && lane.front() != nullptr && taken < bytes.size() &&
           lane.front()->kind == Kind::streamOut) {
        last = lane.take();
        taken += last->payload.size();
    }
    if (!clock.answerAt(*last)) return -ESHUTDOWN;
    return static_cast<int>(std::min(taken, bytes.size()));
}

int PlayedStreams::receive(int fd, std::span<std::uint8_t> buffer) {
    Lane& lane = laneOf(arrivals, fd, records, Kind::streamIn, StreamEvent::receiveEnded);
    const Record* const first = lane.take();
    if (first == nullptr || first->kind == Kind::stream) return failure(first);
    if (!clock.waitFor(*first)) return -ESHUTDOWN;
    std::size_t size = 0;
    for (const Record* piece = first; piece != nullptr; piece = lane.take()) {
        const std::size_t part = std::min(piece->payload.size(), buffer.size() - size);
        std::copy_n(piece->payload.begin(), part, buffer.begin() + static_cast<std::ptrdiff_t>(size));
        size += part;
        const Record* const next = lane.front();
        const bool goesOn = piece->payload.size() == largestPayload && next != nullptr &&
                            next->kind == Kind::streamIn && next->time == first->time &&
                            size + next->payload.size() <= buffer.size();
        if (!goesOn) break;
    }
    return static_cast<int>(size);
}

} // namespace lumbrine::blackbox
