# cmake -DFOLDER=... -DFILES=a,b/c -DOUTPUT=... -P embed_page.cmake: writes a C++ source with the contents of the page's
# files.
set(types_html "text/html; charset=utf-8")
set(types_js "text/javascript; charset=utf-8")
set(types_css "text/css; charset=utf-8")
set(types_json "application/json")
set(types_webmanifest "application/manifest+json")
set(types_svg "image/svg+xml")
set(types_png "image/png")
set(types_ico "image/x-icon")

string(REPLACE "," ";" FILES "${FILES}")
set(contents "")
set(table "")
set(number 0)
foreach(file ${FILES})
    string(REGEX MATCH "[^.]*$" ending "${file}")
    if(NOT DEFINED types_${ending})
        message(FATAL_ERROR "${file}: what is the content type of .${ending}? Add it to embed_page.cmake")
    endif()
    file(READ "${FOLDER}/${file}" bytes HEX)
    string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
    file(SHA256 "${FOLDER}/${file}" hash)
    string(SUBSTRING "${hash}" 0 16 hash)
    string(APPEND contents "constexpr unsigned char file${number}[] = {${bytes}0};\n")
    string(APPEND table "    {\"/${file}\", \"${types_${ending}}\", \"\\\"${hash}\\\"\", "
        "{reinterpret_cast<const char*>(file${number}), sizeof file${number} - 1}},\n")
    math(EXPR number "${number} + 1")
endforeach()

file(WRITE "${OUTPUT}.new" "#include \"web/gateway/page_files.h\"

namespace lumbrine::web {
namespace {

${contents}
const PageFile files[] = {
${table}};

} // namespace

std::span<const PageFile> pageFiles() {
    return files;
}

} // namespace lumbrine::web
")
file(RENAME "${OUTPUT}.new" "${OUTPUT}")
