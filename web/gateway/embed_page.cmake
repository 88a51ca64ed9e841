# cmake -DFILES=.../a,.../b -DOUTPUT=... -P embed_page.cmake: writes a C++ source with the contents of the page's files,
# as they are and, where that is worth it, compressed.
cmake_minimum_required(VERSION 3.25)
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
set(compressible html js css webmanifest svg)
foreach(file ${FILES})
    get_filename_component(name "${file}" NAME)
    string(REGEX MATCH "[^.]*$" ending "${name}")
    if(NOT DEFINED types_${ending})
        message(FATAL_ERROR "${file}: what is the content type of .${ending}? Add it to embed_page.cmake")
    endif()
    file(READ "${file}" bytes HEX)
    string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
    string(APPEND contents "constexpr unsigned char file${number}[] = {${bytes}0};\n")
    set(compressed "{}")
    if(ending IN_LIST compressible)
        file(ARCHIVE_CREATE OUTPUT "${OUTPUT}.gz" PATHS "${file}" FORMAT raw COMPRESSION GZip COMPRESSION_LEVEL 9)
        file(READ "${OUTPUT}.gz" bytes HEX)
        string(SUBSTRING "${bytes}" 0 8 begin)
        string(SUBSTRING "${bytes}" 16 -1 rest)
        set(bytes "${begin}00000000${rest}") # without the time, so that each build is the same
        string(REGEX REPLACE "(..)" "0x\\1," bytes "${bytes}")
        string(APPEND contents "constexpr unsigned char compressed${number}[] = {${bytes}0};\n")
        set(compressed "{reinterpret_cast<const char*>(compressed${number}), sizeof compressed${number} - 1}")
    endif()
    file(SHA256 "${file}" hash)
    string(SUBSTRING "${hash}" 0 16 hash)
    string(APPEND table "    {\"/${name}\", \"${types_${ending}}\", \"W/\\\"${hash}\\\"\", "
        "{reinterpret_cast<const char*>(file${number}), sizeof file${number} - 1}, ${compressed}},\n")
    math(EXPR number "${number} + 1")
endforeach()
file(REMOVE "${OUTPUT}.gz")

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
