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

# What the sanitizers add confuses GCC's look for uninitialized variables in the standard library.
function(hol_sanitize target sanitizers)
  target_compile_options(${target} INTERFACE
    -fsanitize=${sanitizers} -fno-sanitize-recover=all -fno-omit-frame-pointer
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
  target_link_options(${target} INTERFACE -fsanitize=${sanitizers})
endfunction()

if(HOL_SANITIZERS)
  hol_sanitize(hol_options ${HOL_SANITIZERS})
endif()
# What is built a second time, beside the same without sanitizers, has these options.
add_library(hol_sanitized_options INTERFACE)
target_link_libraries(hol_sanitized_options INTERFACE hol_options)
hol_sanitize(hol_sanitized_options address,undefined)

# hol_link_sanitized(PROGRAM LIBRARY WHAT...): the program once more, with the sanitized twin of LIBRARY.
function(hol_link_sanitized program library)
  add_executable(${program}_sanitized)
  # The library's code comes first: of a template that both sides use the linker takes the first.
  target_link_libraries(${program}_sanitized PRIVATE ${library}_sanitized ${ARGN})
  target_link_options(${program}_sanitized PRIVATE
    $<TARGET_PROPERTY:hol_sanitized_options,INTERFACE_LINK_OPTIONS>)
  hol_move_to_sanitized(${program}_sanitized ${program})
endfunction()

function(hol_test_sanitized name program)
  add_test(NAME sanitized-${name} COMMAND ${program} ${ARGN})
  set_tests_properties(sanitized-${name} PROPERTIES ENVIRONMENT
    "ASAN_OPTIONS=detect_leaks=1:detect_stack_use_after_return=1;UBSAN_OPTIONS=print_stacktrace=1")
endfunction()

# hol_move_to_sanitized(TARGET NAME): beside its like without sanitizers and under the same name, in a
# tree of its own, where program and library find each other as they do there.
function(hol_move_to_sanitized target name)
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME ${name}
    RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/sanitized/bin
    LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/sanitized/lib)
endfunction()
