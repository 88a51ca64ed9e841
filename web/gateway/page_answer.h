// What a browser is answered that asks for a file of the page.
#pragma once

#include <string_view>

namespace lumbrine::web {

struct PageAnswer {
    int status = 404; // of HTTP: 200, 304 when the browser has this content already, 404
    std::string_view contentType{};
    std::string_view tag{};
    std::string_view content{}; // empty for any other status than 200
    bool isCompressed = false;  // by gzip
};

// `target` is that of the request: "/page.js?x". `knownTag` is the tag of what the browser has, or empty.
PageAnswer pageAnswer(std::string_view target, std::string_view knownTag, bool takesGzip);

} // namespace lumbrine::web
