#include "platform/portable/nlohmann_reader.h"

#include <nlohmann/json.hpp>

#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace lumbrine {

namespace {

using Library = nlohmann::json;

// Builds the value from the parser's events, so that nothing is thrown and no depth is followed unasked.
class Builder {
public:
    using string_t = Library::string_t;

    explicit Builder(const JSONLimits& limits) : limits(limits) {}

    using Problem = JSONReadError::Kind;

    bool null() { return put<std::nullptr_t>(nullptr); }
    bool boolean(bool flag) { return put<bool>(flag); }
    bool number_integer(Library::number_integer_t number) { return put<std::int64_t>(number); }
    bool number_unsigned(Library::number_unsigned_t number) {
        if (number > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()))
            return put<double>(static_cast<double>(number));
        return put<std::int64_t>(static_cast<std::int64_t>(number));
    }
    bool number_float(Library::number_float_t number, const string_t&) { return put<double>(number); }
    bool string(string_t& characters) { return put<std::string>(characters); } // copied: the parser reuses its memory
    bool binary(Library::binary_t&) { return false; }                          // not in JSON

    bool start_object(std::size_t) { return enter<JSONValue::Object>(); }
    bool key(string_t& name) {
        member = &std::get<JSONValue::Object>(open.back()->content).add(name);
        return true;
    }
    bool end_object() { return leave(); }
    bool start_array(std::size_t) { return enter<JSONValue::Array>(); }
    bool end_array() { return leave(); }

    bool parse_error(std::size_t position, const std::string&, const nlohmann::detail::exception&) {
        error.position = position;
        return false;
    }

    JSONValue document;
    JSONReadError error{Problem::notJSON};

private:
    template <typename Kind>
    bool put(const Kind& content) {
        if (++values > limits.values) return refuse(Problem::tooManyValues);
        place().content.emplace<Kind>(content);
        return true;
    }

    // Where the next value belongs.
    JSONValue& place() {
        if (member != nullptr) return *std::exchange(member, nullptr);
        return open.empty() ? document : std::get<JSONValue::Array>(open.back()->content).emplace_back();
    }

    template <typename Container>
    bool enter() {
        if (open.size() == limits.levels) return refuse(Problem::tooDeep);
        if (++values > limits.values) return refuse(Problem::tooManyValues);
        JSONValue& container = place();
        container.content.emplace<Container>();
        open.push_back(&container);
        return true;
    }

    bool refuse(Problem problem) {
        error.kind = problem;
        return false;
    }

    bool leave() {
        open.pop_back();
        return true;
    }

    const JSONLimits limits;
    std::size_t values = 0;
    std::vector<JSONValue*> open; // none of them grows while one that it holds is open
    JSONValue* member = nullptr;  // whose name has come
};

} // namespace

std::expected<JSONValue, JSONReadError> readJSON(std::string_view document, const JSONLimits& limits) {
    Builder builder(limits);
    if (!Library::sax_parse(document.begin(), document.end(), &builder)) return std::unexpected(builder.error);
    // The parser takes a zero for the end of the text, whatever follows it.
    if (const std::size_t zero = document.find('\0'); zero != std::string_view::npos)
        return std::unexpected(JSONReadError{JSONReadError::Kind::notJSON, zero + 1});
    return std::move(builder.document);
}

} // namespace lumbrine
