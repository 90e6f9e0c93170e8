# Run as a script: writes a source that holds text files as constants, one a file, called after it
# ("line-types-1.txt" is `line_types_1`).
#   cmake -DNAMESPACE=... -DHEADER=... -DSOURCE=... -DTABLES=a.txt;b.txt -P EmbedTables.cmake

# A string literal may not be longer than this everywhere; longer texts are joined of pieces.
set(piece_size 8000)

get_filename_component(HEADER_NAME ${HEADER} NAME)
set(declarations "")
set(definitions "")
foreach(table IN LISTS TABLES)
  get_filename_component(name ${table} NAME_WE)
  string(MAKE_C_IDENTIFIER ${name} identifier)
  file(READ ${table} content)
  string(APPEND declarations "extern const std::string_view ${identifier};\n")
  string(APPEND definitions "const std::string_view ${identifier} =\n")
  string(LENGTH "${content}" length)
  set(begin 0)
  while(begin LESS length)
    string(SUBSTRING "${content}" ${begin} ${piece_size} piece)
    string(APPEND definitions "R\"table(${piece})table\"\n")
    math(EXPR begin "${begin} + ${piece_size}")
  endwhile()
  string(APPEND definitions "\"\";\n")
endforeach()

file(WRITE ${HEADER} "#pragma once

#include <string_view>

// Made from text files when the library is built.
namespace ${NAMESPACE} {
${declarations}}  // namespace ${NAMESPACE}
")
file(WRITE ${SOURCE} "#include \"${HEADER_NAME}\"

namespace ${NAMESPACE} {
${definitions}}  // namespace ${NAMESPACE}
")
