# Writes OUTPUT, a source with the bytes of FILES.
set(types "html=text/html" "css=text/css" "js=text/javascript" "svg=image/svg+xml")
set(table "")
set(text "// Made by the build from the files of the page.\n#include \"cli/browse/Page.h\"\n
namespace cli::browse {\nnamespace {\n\n")
foreach(file IN LISTS FILES)
  get_filename_component(name ${file} NAME)
  string(REGEX REPLACE "[^A-Za-z0-9]" "_" variable ${name})
  string(REGEX REPLACE ".*\\." "" ending ${name})
  foreach(type IN LISTS types)
    if(type MATCHES "^${ending}=(.*)$")
      set(contentType "${CMAKE_MATCH_1}; charset=utf-8")
    endif()
  endforeach()
  file(READ ${file} bytes HEX)
  string(LENGTH "${bytes}" size)
  math(EXPR size "${size} / 2")
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "\\\\x\\1" bytes "${bytes}")
  # Split, since a compiler need not take literals of any length.
  string(REGEX REPLACE "((\\\\x..)(\\\\x..)?(\\\\x..)?(\\\\x..)?(\\\\x..)?(\\\\x..)?(\\\\x..)?(\\\\x..)?)"
    "\\1\"\n\"" bytes "${bytes}")
  string(APPEND text "constexpr char ${variable}[] =\n\"${bytes}\";\n")
  string(APPEND table "    {\"/page/${name}\", \"${contentType}\", {${variable}, ${size}}},\n")
endforeach()
string(APPEND text "\nconstexpr PageFile kFiles[] = {\n${table}};\n\n}  // namespace\n
PageFile const* FindPageFile(std::string_view path) {
  for (PageFile const& file : kFiles) {
    if (file.path == path) return &file;
  }
  return nullptr;
}\n\n}  // namespace cli::browse\n")
file(WRITE ${OUTPUT} "${text}")
