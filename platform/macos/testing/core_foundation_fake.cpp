#include "base/utf8.h"
#include "platform/macos/testing/core_foundation_calls.h"

#include <atomic>
#include <cstddef>
#include <cstring>
#include <string_view>
#include <utility>

using namespace lumbrine::fakes;

struct FakeCFDictionary : FakeCF {
    FakeCFDictionary() : FakeCF(dictionaryType) {}
    ~FakeCFDictionary() override {
        for (const auto& [key, value] : members) {
            CFRelease(key);
            CFRelease(value);
        }
    }
    std::vector<std::pair<const void*, const void*>> members;
};

namespace {

std::atomic<int> live{0};

const FakeCF& object(CFTypeRef reference) {
    return *static_cast<const FakeCF*>(reference);
}

// Of well-formed UTF-8.
std::u16string unitsOf(std::string_view utf8) {
    std::u16string units;
    while (!utf8.empty()) {
        const auto [code, length] = lumbrine::firstCharacter(utf8);
        const char32_t point = *code;
        if (point >= 0x10000) {
            units += static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10));
            units += static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
        } else {
            units += static_cast<char16_t>(point);
        }
        utf8.remove_prefix(length);
    }
    return units;
}

void appendUTF8(std::string& text, std::uint32_t point) {
    const auto tail = [&](unsigned shift) { text += static_cast<char>(0x80 | (point >> shift & 0x3F)); };
    if (point < 0x80) {
        text += static_cast<char>(point);
    } else if (point < 0x800) {
        text += static_cast<char>(0xC0 | point >> 6);
        tail(0);
    } else if (point < 0x10000) {
        text += static_cast<char>(0xE0 | point >> 12);
        tail(6);
        tail(0);
    } else {
        text += static_cast<char>(0xF0 | point >> 18);
        tail(12);
        tail(6);
        tail(0);
    }
}

std::string utf8With(std::u16string_view units, char loss) {
    std::string text;
    for (std::size_t i = 0; i < units.size(); ++i) {
        const std::uint32_t unit = units[i];
        const bool high = unit >= 0xD800 && unit < 0xDC00;
        const bool paired = high && i + 1 < units.size() && units[i + 1] >= 0xDC00 && units[i + 1] < 0xE000;
        if (paired) {
            appendUTF8(text, 0x10000 + ((unit - 0xD800) << 10) + (units[++i] - 0xDC00U));
        } else if (high || (unit >= 0xDC00 && unit < 0xE000)) {
            text += loss;
        } else {
            appendUTF8(text, unit);
        }
    }
    return text;
}

const FakeCFBoolean yes(true);
const FakeCFBoolean no(false);

} // namespace

FakeCF::FakeCF(unsigned long kind) : type(kind) {
    ++live;
}
FakeCF::~FakeCF() {
    --live;
}
FakeCFString::FakeCFString(std::u16string text) : FakeCF(stringType), units(std::move(text)) {}
FakeCFBoolean::FakeCFBoolean(bool flag) : FakeCF(booleanType), value(flag) {}
FakeCFArray::FakeCFArray(std::vector<const void*> elements) : FakeCF(arrayType), values(std::move(elements)) {
    for (const void* value : values)
        CFRetain(value);
}
FakeCFArray::~FakeCFArray() {
    for (const void* value : values)
        CFRelease(value);
}

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFBooleanRef kCFBooleanTrue = &yes;
const CFBooleanRef kCFBooleanFalse = &no;
const CFArrayCallBacks kCFTypeArrayCallBacks{};
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks{};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks{};

CFTypeRef CFRetain(CFTypeRef reference) {
    ++object(reference).references;
    return reference;
}

void CFRelease(CFTypeRef reference) {
    const FakeCF& released = object(reference);
    if (&released == &yes || &released == &no) return;
    if (--released.references == 0) delete &released;
}

CFTypeID CFGetTypeID(CFTypeRef reference) {
    return object(reference).type;
}
CFTypeID CFStringGetTypeID() {
    return stringType;
}
CFTypeID CFBooleanGetTypeID() {
    return booleanType;
}
CFTypeID CFArrayGetTypeID() {
    return arrayType;
}

CFRange CFRangeMake(CFIndex location, CFIndex length) {
    return {location, length};
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const std::uint8_t* bytes, CFIndex size, CFStringEncoding encoding,
                                    Boolean) {
    const std::string_view text(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(size));
    if (encoding != kCFStringEncodingUTF8 || !lumbrine::isUTF8(text)) return nullptr;
    return new FakeCFString(unitsOf(text));
}

CFIndex CFStringGetLength(CFStringRef string) {
    return static_cast<CFIndex>(string->units.size());
}

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding, std::uint8_t lossByte, Boolean,
                         std::uint8_t* buffer, CFIndex capacity, CFIndex* used) {
    const std::u16string_view part =
        std::u16string_view(string->units)
            .substr(static_cast<std::size_t>(range.location), static_cast<std::size_t>(range.length));
    const std::string text = utf8With(part, static_cast<char>(lossByte));
    if (used != nullptr) *used = static_cast<CFIndex>(text.size());
    if (buffer != nullptr && static_cast<std::size_t>(capacity) >= text.size())
        std::memcpy(buffer, text.data(), text.size());
    return range.length;
}

Boolean CFBooleanGetValue(CFBooleanRef boolean) {
    return boolean->value;
}

CFArrayRef CFArrayCreate(CFAllocatorRef, const void** values, CFIndex count, const CFArrayCallBacks*) {
    return new FakeCFArray(std::vector<const void*>(values, values + count));
}

CFIndex CFArrayGetCount(CFArrayRef array) {
    return static_cast<CFIndex>(array->values.size());
}

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
    return array->values.at(static_cast<std::size_t>(index));
}

CFDictionaryRef CFDictionaryCreate(CFAllocatorRef, const void** keys, const void** values, CFIndex count,
                                   const CFDictionaryKeyCallBacks*, const CFDictionaryValueCallBacks*) {
    auto* const made = new FakeCFDictionary();
    for (CFIndex i = 0; i < count; ++i)
        made->members.emplace_back(CFRetain(keys[i]), CFRetain(values[i]));
    return made;
}

namespace lumbrine::fakes {

int liveObjects() {
    return live;
}

std::string textOf(CFStringRef string) {
    return utf8With(string->units, '?');
}

bool flagIn(CFDictionaryRef dictionary, const std::string& key) {
    for (const auto& [name, value] : dictionary->members)
        if (textOf(static_cast<CFStringRef>(name)) == key) return static_cast<CFBooleanRef>(value)->value;
    return false;
}

} // namespace lumbrine::fakes
