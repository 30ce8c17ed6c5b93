# How the folders are built.
#
# Natively only the portable sources exist, with exceptions, so that a test's failure trap can unwind through them. For
# Windows each folder is built twice: as `<folder>_small`, with the flags of the small program, and ordinarily as
# `<folder>`, for korbpack and the test programs.

set(KORB_WARNINGS -Wall -Wextra -Wconversion -Wno-sign-conversion -Werror)
# No path of the build machine goes into a binary.
set(KORB_COMMON ${KORB_WARNINGS} "-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=" "-ffile-prefix-map=${CMAKE_BINARY_DIR}/=build/")
set(KORB_SANITIZERS -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
set(KORB_STUB_FLAGS -Oz -fno-tree-dominator-opts -fno-partial-inlining -fno-tree-loop-im -fno-exceptions -fno-rtti -ffunction-sections -fno-asynchronous-unwind-tables
  -fno-unwind-tables -fno-threadsafe-statics -fno-ident -fno-stack-protector -fmerge-all-constants
  -mpreferred-stack-boundary=2 -march=i486 -mtune=i386
  # Pushed arguments make shorter code. The compiler has them only without its stack probes, which no frame under a
  # page needs: the linker's second look at every function keeps it so.
  -mno-stack-arg-probe -mno-accumulate-outgoing-args -Wframe-larger-than=4000
  # A function that is called once stays one: put into its caller it takes a call away, but makes one frame so large that
  # every access to it gets longer. Two percent of the program.
  -fno-inline-functions-called-once -fconserve-stack -fomit-frame-pointer)
# The whole program is compiled at the link: what only it calls then passes its arguments in registers. Sections of their
# own would align each function there to 4 bytes, and the compiler drops by itself what nobody calls.
set(KORB_STUB_LTO -flto -fno-fat-lto-objects -fno-function-sections)

# The decoder's, which is to be fast: with the tuning of the rest, for the smallest code, it takes an eighth longer.
set(KORB_DECODER_FLAGS -O2 $<$<PLATFORM_ID:Windows>:-mtune=i686> $<$<CXX_COMPILER_ID:GNU>:-finline-functions-called-once>)

if(KORB_FUZZ)
  set(KORB_ORDINARY_FLAGS -O1 -g ${KORB_SANITIZERS} -fsanitize=fuzzer-no-link)
elseif(KORB_SANITIZE)
  set(KORB_ORDINARY_FLAGS -O1 -g ${KORB_SANITIZERS})
elseif(WIN32)
  set(KORB_ORDINARY_FLAGS -O1)
else()
  # Inlined virtual calls make this compiler see accesses that never happen.
  set(KORB_ORDINARY_FLAGS -O2 -Wno-array-bounds)
endif()

# korb_flags(<target>): what every target outside the small program is built with.
function(korb_flags target)
  target_compile_options(${target} PRIVATE ${KORB_COMMON} ${KORB_ORDINARY_FLAGS})
  target_include_directories(${target} PUBLIC ${CMAKE_SOURCE_DIR})
  if(KORB_SANITIZE OR KORB_FUZZ)
    target_link_options(${target} PUBLIC ${KORB_SANITIZERS})
  elseif(WIN32)
    target_link_options(${target} PUBLIC -static -Wl,--no-insert-timestamp)
  endif()
endfunction()

# korb_library(<folder> [PORTABLE <source>...] [WINDOWS <source>...] [USES <folder>...])
function(korb_library folder)
  cmake_parse_arguments(arg "" "" "PORTABLE;WINDOWS;USES" ${ARGN})
  if(WIN32)
    set(sources ${arg_PORTABLE} ${arg_WINDOWS})
    add_library(${folder}_small STATIC ${sources})
    target_compile_options(${folder}_small PRIVATE ${KORB_COMMON} ${KORB_STUB_FLAGS} ${KORB_STUB_LTO})
    target_include_directories(${folder}_small PUBLIC ${CMAKE_SOURCE_DIR})
    add_library(${folder} STATIC ${sources})
    korb_flags(${folder})
    foreach(used ${arg_USES})
      target_link_libraries(${folder}_small PUBLIC ${used}_small)
      target_link_libraries(${folder} PUBLIC ${used})
    endforeach()
  elseif(arg_PORTABLE)
    add_library(${folder} STATIC ${arg_PORTABLE})
    korb_flags(${folder})
    foreach(used ${arg_USES})
      if(TARGET ${used}) # some folders have nothing portable
        target_link_libraries(${folder} PUBLIC ${used})
      endif()
    endforeach()
  endif()
endfunction()

# korb_native_headers(<target> <folder>...): header-only libraries of the native system. The cross compiler can use them
# too, but nothing else that lies beside them.
find_path(KORB_NATIVE_HEADERS doctest/doctest.h PATHS /usr/include /usr/local/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/native)
function(korb_native_headers target)
  foreach(library ${ARGN})
    file(CREATE_LINK ${KORB_NATIVE_HEADERS}/${library} ${CMAKE_BINARY_DIR}/native/${library} SYMBOLIC)
  endforeach()
  target_include_directories(${target} SYSTEM PRIVATE ${CMAKE_BINARY_DIR}/native)
endfunction()

# Test programs. A Windows one runs through Wine in a prefix of its own (tests/support/run-wine), with what RUN_WITH says.
function(korb_test_program name)
  cmake_parse_arguments(arg "" "" "USES;RUN_WITH;ARGUMENTS" ${ARGN})
  add_executable(${name} ${arg_UNPARSED_ARGUMENTS})
  korb_flags(${name})
  korb_native_headers(${name} doctest)
  target_link_libraries(${name} PRIVATE ${arg_USES})
  if(WIN32)
    add_test(NAME ${name} COMMAND ${CMAKE_SOURCE_DIR}/tests/support/run-wine ${arg_RUN_WITH} ${CMAKE_BINARY_DIR}
      $<TARGET_FILE:${name}> ${arg_ARGUMENTS})
  else()
    add_test(NAME ${name} COMMAND ${name})
  endif()
  set_tests_properties(${name} PROPERTIES TIMEOUT 300)
endfunction()

# korb_unit_test(<folder> <source>... [USES <library>...]): one doctest program for each folder's portable tests.
function(korb_unit_test folder)
  cmake_parse_arguments(arg "" "" "USES" ${ARGN})
  korb_test_program(unit_${folder} ${CMAKE_SOURCE_DIR}/tests/support/Main.cpp ${arg_UNPARSED_ARGUMENTS}
    USES test_support ${arg_USES})
endfunction()

# korb_win32_test(<name> <source>... [USES <library>...]): a doctest program on the real calls.
function(korb_win32_test name)
  if(WIN32)
    cmake_parse_arguments(arg "" "" "USES" ${ARGN})
    korb_test_program(win32_${name} ${CMAKE_SOURCE_DIR}/tests/support/Main.cpp ${arg_UNPARSED_ARGUMENTS}
      USES test_support ${arg_USES})
  endif()
endfunction()

# korb_e2e_test(<name> <source>... [USES <library>...] [WITH <target>...] [BESIDE <file>...] [SCREEN <width>x<height>]
# [SMALL_DRIVE <kilobytes>] [WIN64]): whole runs of the program that ships, which lies beside the test, with the programs
# of WITH and the files of BESIDE. E: is a small floppy disk, or a fixed drive of that size, where this machine mounts one.
# With a screen, the test sees what windows paint. With WIN64 it runs on a 64-bit Windows too, as e2e_<name>_win64.
function(korb_e2e_test name)
  cmake_parse_arguments(arg "WIN64" "SCREEN;SMALL_DRIVE" "USES;WITH;BESIDE" ${ARGN})
  set(drive --floppy 256)
  if(arg_SMALL_DRIVE)
    set(drive --small-drive ${arg_SMALL_DRIVE})
  endif()
  list(TRANSFORM arg_BESIDE PREPEND "--with;")
  list(TRANSFORM arg_WITH REPLACE "(.+)" "--with;$<TARGET_FILE:\\1>" OUTPUT_VARIABLE with)
  if(arg_SCREEN)
    set(screen --screen ${arg_SCREEN})
  endif()
  list(TRANSFORM arg_UNPARSED_ARGUMENTS PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/ REGEX "^[^/]")
  set(support ${CMAKE_SOURCE_DIR}/tests/support)
  set(run_with --with $<TARGET_FILE:korb> ${with} ${arg_BESIDE} ${drive} ${screen})
  korb_test_program(e2e_${name} ${support}/Main.cpp ${support}/Desktop.cpp ${support}/PackedProduct.cpp
    ${support}/Process.cpp ${arg_UNPARSED_ARGUMENTS} USES test_support korbpack_lib ${arg_USES}
    RUN_WITH ${run_with})
  add_dependencies(e2e_${name} korb ${arg_WITH})
  set(tests e2e_${name})
  if(arg_WIN64)
    add_test(NAME e2e_${name}_win64 COMMAND ${support}/run-wine --win64 ${run_with} ${CMAKE_BINARY_DIR}
      $<TARGET_FILE:e2e_${name}>)
    list(APPEND tests e2e_${name}_win64)
  endif()
  set_tests_properties(${tests} PROPERTIES TIMEOUT 300 ENVIRONMENT
    "KORB_E2E=${CMAKE_CURRENT_SOURCE_DIR};KORB_EXAMPLES=${CMAKE_SOURCE_DIR}/examples")
endfunction()

# korb_fuzzer(<name> <source>... USES <library>...): a libFuzzer program. Its test fuzzes for KORB_FUZZ_SECONDS, from the
# inputs kept in tests/fuzz/corpus/<name>; what it finds worth keeping stays below the build folder.
set(KORB_FUZZ_SECONDS 11 CACHE STRING "How long the test of each fuzzer runs")
function(korb_fuzzer name)
  if(NOT KORB_FUZZ)
    return()
  endif()
  cmake_parse_arguments(arg "" "" "USES" ${ARGN})
  add_executable(${name} ${arg_UNPARSED_ARGUMENTS})
  korb_flags(${name})
  target_link_options(${name} PRIVATE -fsanitize=fuzzer)
  target_link_libraries(${name} PRIVATE test_support ${arg_USES})
  set(found ${CMAKE_BINARY_DIR}/corpus/${name})
  file(MAKE_DIRECTORY ${found})
  set(kept ${CMAKE_SOURCE_DIR}/tests/fuzz/corpus/${name})
  math(EXPR limit "${KORB_FUZZ_SECONDS} + 120")
  add_test(NAME ${name} COMMAND ${name} -max_total_time=${KORB_FUZZ_SECONDS} -timeout=20 -rss_limit_mb=4096
    -print_final_stats=1 -verbosity=0 -artifact_prefix=${CMAKE_BINARY_DIR}/${name}- ${found} ${kept})
  set_tests_properties(${name} PROPERTIES TIMEOUT ${limit})
endfunction()

# korb_stub(<name> <source>... USES <folder>... LIBRARIES <library>...): the program that ships, of the small build of
# the folders. No start files and no C library: a first Windows 95 has none, and the compiler's own use instructions that
# its machines lack. No relocations: it loads at its base. Time stamps and paths stay out, so the same sources give the
# same bytes.
function(korb_stub name)
  cmake_parse_arguments(arg "" "" "USES;LIBRARIES" ${ARGN})
  add_executable(${name} WIN32 ${arg_UNPARSED_ARGUMENTS})
  target_compile_options(${name} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:${KORB_COMMON} ${KORB_STUB_FLAGS} ${KORB_STUB_LTO}>)
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR})
  list(TRANSFORM arg_USES APPEND _small)
  target_link_libraries(${name} PRIVATE ${arg_USES} gcc ${arg_LIBRARIES})
  target_link_options(${name} PRIVATE ${KORB_STUB_FLAGS} ${KORB_STUB_LTO} -flto-partition=one -fwhole-program -static -nostartfiles -nodefaultlibs -Wl,-e,_WinMainCRTStartup
    -Wl,-T,${CMAKE_SOURCE_DIR}/cmake/stub.ld
    -Wl,--gc-sections,--disable-dynamicbase,--nxcompat,--disable-reloc-section,--no-insert-timestamp
    -Wl,--major-subsystem-version,4,--minor-subsystem-version,0)
  set_target_properties(${name} PROPERTIES LINK_DEPENDS ${CMAKE_SOURCE_DIR}/cmake/stub.ld)
  # The names stay beside the program, for scripts/size.
  add_custom_command(TARGET ${name} POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E copy $<TARGET_FILE:${name}> ${CMAKE_BINARY_DIR}/${name}.sym
    COMMAND ${CMAKE_STRIP} -p -s $<TARGET_FILE:${name}>)
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
endfunction()
