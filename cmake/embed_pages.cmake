# Writes a C++ source that holds the report page files (scripts and style sheets) as byte
# arrays, so that the library carries them and the sources stay real .js and .css files.
#   cmake -DOUTPUT=file.cpp -DFILES="a.js;b.css" -P embed_pages.cmake
set(body "")
set(table "")
set(index 0)
foreach(file IN LISTS FILES)
    get_filename_component(name "${file}" NAME)
    file(READ "${file}" hex HEX)
    string(LENGTH "${hex}" hexLength)
    math(EXPR size "${hexLength} / 2")
    string(REGEX REPLACE "([0-9a-f][0-9a-f])" "'\\\\x\\1'," bytes "${hex}")
    # Sixteen bytes to a line keeps the generated file readable and diffable.
    string(REGEX REPLACE "(('[^']*',){16})" "\\1\n    " bytes "${bytes}")
    string(APPEND body "constexpr char kFile${index}[] = {\n    ${bytes}'\\0'};\n")
    string(APPEND table "    {\"${name}\", std::string_view(kFile${index}, ${size})},\n")
    math(EXPR index "${index} + 1")
endforeach()
file(WRITE "${OUTPUT}.tmp" "// Generated from src/report/pages by cmake/embed_pages.cmake; do not edit.
#include \"report/page_files.h\"

namespace pt::report {
namespace {
${body}}  // namespace

const PageFile kPageFiles[] = {
${table}};
const std::size_t kPageFileCount = ${index};

}  // namespace pt::report
")
# Only a changed text touches the output, so that an unchanged page rebuilds nothing.
file(COPY_FILE "${OUTPUT}.tmp" "${OUTPUT}" ONLY_IF_DIFFERENT)
file(REMOVE "${OUTPUT}.tmp")
