#include "base/json_value.h"

#include <algorithm>
#include <ranges>

namespace lumbrine {

JSONObject::JSONObject() = default;
JSONObject::JSONObject(std::initializer_list<JSONMember> initial) : all(initial) {}
JSONObject::JSONObject(const JSONObject&) = default;
JSONObject::JSONObject(JSONObject&&) noexcept = default;
JSONObject& JSONObject::operator=(const JSONObject&) = default;
JSONObject& JSONObject::operator=(JSONObject&&) noexcept = default;
JSONObject::~JSONObject() = default;

void JSONObject::reserve(std::size_t count) {
    all.reserve(count);
}

const JSONValue* JSONObject::find(std::string_view name) const {
    for (const JSONMember& member : std::views::reverse(all))
        if (member.name == name) return &member.value;
    return nullptr;
}

bool JSONObject::operator==(const JSONObject& other) const {
    // Nested values are compared in one direction only. Comparing them in both would double the work at every level.
    const auto isTheirs = [&](const JSONMember& member) {
        if (find(member.name) != &member.value) return true; // a later member of the same name counts instead
        const JSONValue* const theirs = other.find(member.name);
        return theirs != nullptr && *theirs == member.value;
    };
    const auto isHere = [&](const JSONMember& member) { return find(member.name) != nullptr; };
    return std::ranges::all_of(all, isTheirs) && std::ranges::all_of(other.all, isHere);
}

} // namespace lumbrine
