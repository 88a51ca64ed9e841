#include "web/gateway/page_answer.h"

#include "web/gateway/page_files.h"

#include <algorithm>

namespace lumbrine::web {

PageAnswer pageAnswer(std::string_view target, std::string_view knownTag, bool takesGzip) {
    const std::string_view path = target.substr(0, target.find('?'));
    const auto file = std::ranges::find(pageFiles(), path == "/" ? "/index.html" : path, &PageFile::path);
    PageAnswer answer;
    if (file == pageFiles().end()) return answer;
    answer.contentType = file->contentType;
    answer.tag = file->tag;
    answer.status = knownTag == file->tag ? 304 : 200;
    if (answer.status == 304) return answer;
    answer.isCompressed = takesGzip && !file->compressed.empty();
    answer.content = answer.isCompressed ? file->compressed : file->content;
    return answer;
}

} // namespace lumbrine::web
