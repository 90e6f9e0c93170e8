# Options of every target that we compile, as one interface.
add_library(hol_options INTERFACE)
target_compile_options(hol_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                                             -Wno-sign-conversion -Wnon-virtual-dtor)
# GCC 12 sees overlaps in std::string that cannot be (GCC bug 105651).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(hol_options INTERFACE -Wno-restrict)
endif()
if(HOL_WARNINGS_AS_ERRORS)
  target_compile_options(hol_options INTERFACE -Werror)
endif()
if(HOL_DEVELOPMENT_BUILD)
  target_compile_definitions(hol_options INTERFACE HOL_DEVELOPMENT_BUILD)
endif()
if(HOL_BUILD_FUZZERS)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "the fuzzers need clang; configure with -DCMAKE_CXX_COMPILER=clang++-16")
  endif()
  target_compile_options(hol_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(HOL_SANITIZERS)
  # What the sanitizers add confuses GCC's look for uninitialized variables in the standard library.
  target_compile_options(hol_options INTERFACE
    -fsanitize=${HOL_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  target_link_options(hol_options INTERFACE -fsanitize=${HOL_SANITIZERS})
endif()
