// Reads what the payload of a record begins with.
#pragma once

#include "blackbox/ring_reader.h"

#include <cstring>
#include <optional>
#include <string_view>

namespace lumbrine::blackbox {

// Absent when the payload is too short for it.
template <typename Head>
std::optional<Head> headOf(const Record& record) {
    if (record.payload.size() < sizeof(Head)) return std::nullopt;
    Head head;
    std::memcpy(&head, record.payload.data(), sizeof head);
    return head;
}

// What follows a head that is there.
template <typename Head>
ByteView behind(const Record& record) {
    return record.payload.subspan(sizeof(Head));
}

inline std::string_view asText(ByteView bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

} // namespace lumbrine::blackbox
