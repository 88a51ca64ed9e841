// Converts between UTF-8 text and Foundation strings. For Objective-C++ files only.
#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <string_view>

namespace lumbrine {

// Nil when the text is not UTF-8.
inline NSString* _Nullable nsString(std::string_view utf8) {
    return [[NSString alloc] initWithBytes:utf8.data() length:utf8.size() encoding:NSUTF8StringEncoding];
}

// For texts that are displayed: never nil, and empty when the text is not UTF-8.
inline NSString* _Nonnull shownText(std::string_view utf8) {
    NSString* const string = nsString(utf8);
    return string == nil ? @"" : string;
}

// Empty for nil and for a string that UTF-8 cannot express.
inline std::string utf8Of(NSString* _Nullable string) {
    NSData* const bytes = [string dataUsingEncoding:NSUTF8StringEncoding];
    return bytes == nil ? std::string() : std::string(static_cast<const char*>(bytes.bytes), bytes.length);
}

} // namespace lumbrine
