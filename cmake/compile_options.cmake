# One set of options for everything we build. Results are promised bit for bit, so no compiler may fuse a product and a
# sum, and none may reorder arithmetic.
add_library(talvek_options INTERFACE)
if(MSVC)
  target_compile_options(talvek_options INTERFACE /W4 /fp:precise /utf-8)
  target_compile_definitions(talvek_options INTERFACE _CRT_SECURE_NO_WARNINGS NOMINMAX)
  if(TALVEK_WARNINGS_AS_ERRORS)
    target_compile_options(talvek_options INTERFACE /WX)
  endif()
else()
  target_compile_options(talvek_options INTERFACE -Wall -Wextra -Wconversion -Wshadow -Wformat=2 -ffp-contract=off)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC 12 sees overlapping copies in the concatenation of std::string where there are none (its bug 105651).
    target_compile_options(talvek_options INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-Wno-restrict>)
  endif()
  if(TALVEK_WARNINGS_AS_ERRORS)
    target_compile_options(talvek_options INTERFACE -Werror)
  endif()
endif()

if(TALVEK_SANITIZE)
  target_compile_options(talvek_options INTERFACE
    -fsanitize=${TALVEK_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(talvek_options INTERFACE -fsanitize=${TALVEK_SANITIZE})
endif()

if(MINGW)
  # The compiler's runtime goes into each binary, so that only system DLLs are needed beside it.
  target_link_options(talvek_options INTERFACE -static -static-libgcc -static-libstdc++)
endif()
