# Common settings of all targets. Flags are set on targets, never on directories, so that third-party code is
# compiled with its own flags.

include(UlvakHardening)
ulvak_find_hardening()

function(ulvak_common target)
  # Every field of our records has a default: leaving one out is what designated initialisers are for. GCC 12
  # reports false overlaps in "x" + std::string, and clang reports the standard library's own use of what it
  # has deprecated.
  set(ours "$<COMPILE_LANGUAGE:CXX,OBJCXX>")  # these do not apply to Swift
  set(warnings
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor -Woverloaded-virtual
    -Wno-missing-field-initializers
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
    $<$<CXX_COMPILER_ID:Clang,AppleClang>:-Wno-deprecated-declarations>
    $<$<BOOL:${ULVAK_STRICT}>:-Werror>)
  target_compile_options(${target} PRIVATE "$<${ours}:${warnings}>")
  if(APPLE)
    # std::stop_token is experimental in this standard library, but header-only. QCoro uses std::exception_ptr
    # without including its header.
    target_compile_definitions(${target} PRIVATE "$<${ours}:_LIBCPP_ENABLE_EXPERIMENTAL>")
    target_compile_options(${target} PRIVATE
      "$<${ours}:SHELL:-include exception>" "$<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-arc>")
    # The Swift part is an ordinary library.
    set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX)
  endif()
  target_compile_options(${target} PRIVATE "$<${ours}:${ULVAK_HARDENING_FLAGS}>")
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "EXECUTABLE")
    target_link_options(${target} PRIVATE ${ULVAK_HARDENING_LINKS})
  endif()
  if(ULVAK_SANITIZE)
    # GCC 12 reports false uninitialised reads in instrumented code.
    target_compile_options(${target} PRIVATE -fsanitize=${ULVAK_SANITIZE} -fno-omit-frame-pointer
      $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    target_link_options(${target} PUBLIC -fsanitize=${ULVAK_SANITIZE})
    # Each compiler has its own way to tell which sanitizer is on.
    target_compile_definitions(${target} PRIVATE ULVAK_SANITIZED)
    if(ULVAK_SANITIZE STREQUAL "thread")
      target_compile_definitions(${target} PRIVATE ULVAK_THREAD_SANITIZER)
    endif()
  endif()
endfunction()

# ulvak_precompile(<target> <headers>...): on macOS it is untested.
set(ULVAK_PRECOMPILES ${ULVAK_PRECOMPILE})
if(APPLE)
  set(ULVAK_PRECOMPILES OFF)
endif()
function(ulvak_precompile target)
  if(ULVAK_PRECOMPILES)
    target_precompile_headers(${target} PRIVATE ${ARGN})
    # Otherwise ccache never finds what was compiled with them.
    target_compile_options(${target} PRIVATE "$<$<CXX_COMPILER_ID:Clang>:SHELL:-Xclang -fno-pch-timestamp>")
  endif()
endfunction()

# ulvak_library(<folder> SOURCES <files>...): the static target ulvak_<folder>, alias ulvak::<folder>.
function(ulvak_library folder)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES")
  add_library(ulvak_${folder} STATIC ${arg_SOURCES})
  add_library(ulvak::${folder} ALIAS ulvak_${folder})
  target_include_directories(ulvak_${folder} PUBLIC "${PROJECT_SOURCE_DIR}/src")
  ulvak_common(ulvak_${folder})
endfunction()

# ulvak_test_code(<target>): in tests, only the code under test is built as users run it. Optimising the tests
# themselves takes longer than running them.
function(ulvak_test_code target)
  set(ULVAK_HARDENING_FLAGS "")  # which need optimised code
  set(ULVAK_HARDENING_LINKS "")
  ulvak_common(${target})
  target_compile_options(${target} PRIVATE -O0)
endfunction()

# ulvak_run_tests(<program> <folder> [<pattern>...]): makes ctest run the program once, for all tests except
# those that match a pattern. These get a process each: they change process-wide state that cannot be
# restored, or need a disk to themselves.
function(ulvak_run_tests program folder)
  string(JOIN ":" alone ${ARGN})
  add_test(NAME ${folder}/${program} COMMAND ${program} "--gtest_filter=-${alone}")
  set_tests_properties(${folder}/${program} PROPERTIES TIMEOUT 1800)
  if(alone)
    gtest_discover_tests(${program}
      TEST_PREFIX "${folder}/"
      TEST_FILTER "${alone}"
      PROPERTIES TIMEOUT 900
      DISCOVERY_TIMEOUT 60)
  endif()
endfunction()

# ulvak_test(<folder> [NAME <name>] [OWN_MAIN] SOURCES <files>... LIBRARIES <targets>... ALONE <patterns>...):
# the binary <folder>_tests, or <name>_tests if a folder has several. With OWN_MAIN one of the sources defines
# main. ALONE: the patterns of ulvak_run_tests.
function(ulvak_test folder)
  cmake_parse_arguments(PARSE_ARGV 1 arg "OWN_MAIN" "NAME" "SOURCES;LIBRARIES;ALONE")
  set(program ${folder}_tests)
  if(arg_NAME)
    set(program ${arg_NAME}_tests)
  endif()
  set(main GTest::gtest_main)
  if(arg_OWN_MAIN)
    set(main GTest::gtest)
  endif()
  add_executable(${program} ${arg_SOURCES})
  target_link_libraries(${program} PRIVATE ${arg_LIBRARIES} ulvak::test_support GTest::gmock ${main})
  ulvak_test_code(${program})
  # The toolkit's code is compiled with different flags.
  if(arg_OWN_MAIN)
    ulvak_precompile_test_headers(${program} <QtTest>)
  elseif(TARGET ulvak_test_headers)
    target_precompile_headers(${program} REUSE_FROM ulvak_test_headers)
  endif()
  ulvak_run_tests(${program} ${folder} ${arg_ALONE})
endfunction()
