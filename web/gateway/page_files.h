// The files of the page, which the program contains.
#pragma once

#include <span>
#include <string_view>

namespace lumbrine::web {

struct PageFile {
    std::string_view path;        // "/strips/fader.js"
    std::string_view contentType; // "text/javascript; charset=utf-8"
    std::string_view tag;         // an HTTP entity tag with its quotes; another content has another tag
    std::string_view content;
};

// All of them. "/index.html" is what "/" shows.
std::span<const PageFile> pageFiles();

} // namespace lumbrine::web
