# Files that become part of a program, so that it has none to find at run time.

# Appends to the list `sources` a source that defines `const unsigned char NAME[]` and `const std::size_t NAMESize` in
# namespace talvek::host with the bytes of a file.
function(talvek_embed_file sources name file)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
  file(READ ${file} hex HEX)
  string(REGEX REPLACE "(................................)" "\\1\n" lines "${hex}")
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${lines}")
  set(source ${CMAKE_CURRENT_BINARY_DIR}/embedded/${name}.cpp)
  file(CONFIGURE OUTPUT ${source} @ONLY CONTENT [[
#include <cstddef>
namespace talvek::host {
extern const unsigned char @name@[];
extern const std::size_t @name@Size;
const unsigned char @name@[] = {
@bytes@};
const std::size_t @name@Size = sizeof @name@;
}  // namespace talvek::host
]])
  set(${sources} ${${sources}} ${source} PARENT_SCOPE)
endfunction()
