// For tests of the back ends on other systems: a fake of the CoreFoundation functions that they call. It counts the
// references of each object, and all objects.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// An object as the fake functions see it. It begins with one reference.
struct FakeCF {
    explicit FakeCF(unsigned long kind);
    FakeCF(const FakeCF&) = delete;
    FakeCF& operator=(const FakeCF&) = delete;
    virtual ~FakeCF();

    const unsigned long type;
    mutable int references = 1;
};
struct FakeCFString : FakeCF {
    explicit FakeCFString(std::u16string text);
    const std::u16string units;
};
struct FakeCFBoolean : FakeCF {
    explicit FakeCFBoolean(bool flag);
    const bool value;
};
struct FakeCFArray : FakeCF {
    explicit FakeCFArray(std::vector<const void*> elements); // retains the elements
    ~FakeCFArray() override;
    const std::vector<const void*> values;
};
struct FakeCFDictionary;
struct FakeCFAllocator;
struct FakeCallBacks {};

using Boolean = unsigned char;
using CFIndex = long;
using CFTypeID = unsigned long;
using CFStringEncoding = std::uint32_t;
using CFTypeRef = const void*;
using CFAllocatorRef = const FakeCFAllocator*;
using CFStringRef = const FakeCFString*;
using CFBooleanRef = const FakeCFBoolean*;
using CFArrayRef = const FakeCFArray*;
using CFDictionaryRef = const FakeCFDictionary*;
using CFArrayCallBacks = FakeCallBacks;
using CFDictionaryKeyCallBacks = FakeCallBacks;
using CFDictionaryValueCallBacks = FakeCallBacks;
struct CFRange {
    CFIndex location;
    CFIndex length;
};

inline constexpr CFStringEncoding kCFStringEncodingUTF8 = 0x08000100;

extern "C" {
extern const CFAllocatorRef kCFAllocatorDefault;
extern const CFBooleanRef kCFBooleanTrue;
extern const CFBooleanRef kCFBooleanFalse;
extern const CFArrayCallBacks kCFTypeArrayCallBacks;
extern const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;
extern const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;

CFTypeRef CFRetain(CFTypeRef object);
void CFRelease(CFTypeRef object);
CFTypeID CFGetTypeID(CFTypeRef object);
CFTypeID CFStringGetTypeID();
CFTypeID CFBooleanGetTypeID();
CFTypeID CFArrayGetTypeID();
CFRange CFRangeMake(CFIndex location, CFIndex length);
CFStringRef CFStringCreateWithBytes(CFAllocatorRef allocator, const std::uint8_t* bytes, CFIndex size,
                                    CFStringEncoding encoding, Boolean isExternal);
CFIndex CFStringGetLength(CFStringRef string);
CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, std::uint8_t lossByte,
                         Boolean isExternal, std::uint8_t* buffer, CFIndex capacity, CFIndex* used);
Boolean CFBooleanGetValue(CFBooleanRef boolean);
CFArrayRef CFArrayCreate(CFAllocatorRef allocator, const void** values, CFIndex count,
                         const CFArrayCallBacks* callBacks);
CFIndex CFArrayGetCount(CFArrayRef array);
const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index);
CFDictionaryRef CFDictionaryCreate(CFAllocatorRef allocator, const void** keys, const void** values, CFIndex count,
                                   const CFDictionaryKeyCallBacks* keyCallBacks,
                                   const CFDictionaryValueCallBacks* valueCallBacks);
}

namespace lumbrine::fakes {

inline constexpr CFTypeID stringType = 7;
inline constexpr CFTypeID booleanType = 21;
inline constexpr CFTypeID numberType = 22;
inline constexpr CFTypeID arrayType = 19;
inline constexpr CFTypeID dictionaryType = 18;
inline constexpr CFTypeID elementType = 301;
inline constexpr CFTypeID errorType = 302;

// The number of existing objects, not counting the two booleans.
int liveObjects();

std::string textOf(CFStringRef string);

// The boolean for a key of a dictionary; false when the key is missing.
bool flagIn(CFDictionaryRef dictionary, const std::string& key);

} // namespace lumbrine::fakes
