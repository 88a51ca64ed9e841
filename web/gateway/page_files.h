// The files of the page, which the program contains.
#pragma once

#include <span>
#include <string_view>

namespace lumbrine::web {

struct PageFile {
    std::string_view path;        // "/page.js"
    std::string_view contentType; // "text/javascript; charset=utf-8"
    std::string_view tag;         // a weak HTTP entity tag with its quotes; another content has another tag
    std::string_view content;
    std::string_view compressed; // the content by gzip; empty where that is not worth it
};

// All of them. "/index.html" is what "/" shows.
std::span<const PageFile> pageFiles();

} // namespace lumbrine::web
