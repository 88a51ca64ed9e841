#include "platform/macos/foundation_json.h"

#include "platform/macos/foundation_text.h"

#include <cmath>
#include <limits>
#include <optional>

namespace lumbrine {

namespace {

enum class Unwritable { number, text };

// Converts each kind of value to a Foundation object. NSJSONSerialization raises an exception for values that JSON
// cannot express, so they are found here first.
struct Writer {
    id operator()(std::nullptr_t) { return NSNull.null; }
    id operator()(bool flag) { return flag ? @YES : @NO; }
    id operator()(std::int64_t number) { return [NSNumber numberWithLongLong:number]; }
    id operator()(double number) {
        if (!std::isfinite(number)) problem = Unwritable::number;
        return [NSNumber numberWithDouble:number];
    }
    id operator()(const std::string& characters) { return textOf(characters); }
    id operator()(const JSONValue::Array& elements) {
        NSMutableArray* const array = [NSMutableArray arrayWithCapacity:elements.size()];
        for (const JSONValue& element : elements)
            [array addObject:std::visit(*this, element.content)];
        return array;
    }
    id operator()(const JSONValue::Object& object) {
        NSMutableDictionary* const dictionary = [NSMutableDictionary dictionaryWithCapacity:object.members().size()];
        for (const JSONMember& member : object.members())
            dictionary[textOf(member.name)] = std::visit(*this, member.value.content);
        return dictionary;
    }

    NSString* textOf(const std::string& characters) {
        NSString* const string = nsString(characters);
        if (string != nil) return string;
        problem = Unwritable::text;
        return @"";
    }

    std::optional<Unwritable>& problem;
};

bool isBoolean(NSNumber* number) {
    return CFGetTypeID((__bridge CFTypeRef)number) == CFBooleanGetTypeID();
}

JSONValue valueOf(NSNumber* number) {
    if (isBoolean(number)) return static_cast<bool>(number.boolValue);
    const bool isWhole = !CFNumberIsFloatType((__bridge CFNumberRef)number);
    const bool fits = [number compare:@(std::numeric_limits<std::int64_t>::max())] != NSOrderedDescending;
    if (isWhole && fits) return std::int64_t{number.longLongValue};
    return number.doubleValue;
}

// Absent when it is nested too deeply.
std::optional<JSONValue> valueOf(id object, int depth);

std::optional<JSONValue> valueOf(NSArray* array, int depth) {
    JSONValue::Array elements;
    elements.reserve(array.count);
    for (id element in array) {
        auto value = valueOf(element, depth + 1);
        if (!value) return std::nullopt;
        elements.push_back(std::move(*value));
    }
    return elements;
}

std::optional<JSONValue> valueOf(NSDictionary* dictionary, int depth) {
    JSONValue::Object members;
    members.reserve(dictionary.count);
    for (NSString* name in dictionary) {
        auto value = valueOf(dictionary[name], depth + 1);
        if (!value) return std::nullopt;
        members.add(utf8Of(name)) = *std::move(value);
    }
    return members;
}

std::optional<JSONValue> valueOf(id object, int depth) {
    if ([object isKindOfClass:NSString.class]) return utf8Of(static_cast<NSString*>(object));
    if ([object isKindOfClass:NSNumber.class]) return valueOf(static_cast<NSNumber*>(object));
    if (depth == FoundationJSON::deepest) return std::nullopt;
    if ([object isKindOfClass:NSArray.class]) return valueOf(static_cast<NSArray*>(object), depth);
    if ([object isKindOfClass:NSDictionary.class]) return valueOf(static_cast<NSDictionary*>(object), depth);
    return JSONValue();
}

} // namespace

std::expected<std::string, JSONError> FoundationJSON::serialise(const JSONValue::Object& object) {
    @autoreleasepool {
        std::optional<Unwritable> problem;
        const id converted = Writer{problem}(object);
        if (problem == Unwritable::number)
            return std::unexpected(JSONError{
                text("a number that is not finite cannot be written as JSON", "有限でない数は JSON に書けない")});
        if (problem == Unwritable::text)
            return std::unexpected(JSONError{
                text("text that is not UTF-8 cannot be written as JSON", "UTF-8 でない文字は JSON に書けない")});
        NSError* error = nil;
        NSData* const data = [NSJSONSerialization dataWithJSONObject:converted options:0 error:&error];
        if (data == nil) return std::unexpected(JSONError{utf8Of(error.localizedDescription)});
        return std::string(static_cast<const char*>(data.bytes), data.length);
    }
}

std::expected<JSONValue, JSONError> FoundationJSON::parse(std::string_view document) {
    @autoreleasepool {
        NSData* const data = [NSData dataWithBytes:document.data() length:document.size()];
        NSError* error = nil;
        const id object = [NSJSONSerialization JSONObjectWithData:data options:0 error:&error];
        if (object == nil) return std::unexpected(JSONError{utf8Of(error.localizedDescription)});
        auto value = valueOf(object, 0);
        if (!value) return std::unexpected(JSONError{text("JSON is nested too deeply", "JSON の入れ子が深すぎる")});
        return std::move(*value);
    }
}

} // namespace lumbrine
