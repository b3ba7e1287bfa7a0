# What every target of this project has in common. Flags sit on the targets, never on the directory,
# so that a library found on the system is compiled against as it is.

include(UlvakHardening)
ulvak_find_hardening()

function(ulvak_common target)
  # Every field of our records has a default: leaving one out is what designated initialisers are for. GCC 12
  # sees overlaps that are none in "x" + std::string, and clang the standard library's own use of what that
  # library has deprecated.
  set(ours "$<COMPILE_LANGUAGE:CXX,OBJCXX>")  # Swift takes none of this
  set(warnings
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor -Woverloaded-virtual
    -Wno-missing-field-initializers
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
    $<$<CXX_COMPILER_ID:Clang,AppleClang>:-Wno-deprecated-declarations>
    $<$<BOOL:${ULVAK_STRICT}>:-Werror>)
  target_compile_options(${target} PRIVATE "$<${ours}:${warnings}>")
  if(APPLE)
    # std::stop_token is experimental in this standard library; all of it is in headers. QCoro uses
    # std::exception_ptr without including what declares it.
    target_compile_definitions(${target} PRIVATE "$<${ours}:_LIBCPP_ENABLE_EXPERIMENTAL>")
    target_compile_options(${target} PRIVATE
      "$<${ours}:SHELL:-include exception>" "$<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-arc>")
    # The Swift in it is a library like others.
    set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX)
  endif()
  target_compile_options(${target} PRIVATE "$<${ours}:${ULVAK_HARDENING_FLAGS}>")
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "EXECUTABLE")
    target_link_options(${target} PRIVATE ${ULVAK_HARDENING_LINKS})
  endif()
  if(ULVAK_SANITIZE)
    # What GCC 12 makes of instrumented code looks to it as if it read what was never written.
    target_compile_options(${target} PRIVATE -fsanitize=${ULVAK_SANITIZE} -fno-omit-frame-pointer
      $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
    target_link_options(${target} PUBLIC -fsanitize=${ULVAK_SANITIZE})
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

# ulvak_test_code(<target>): of the tests, only what they test is as users run it. To optimise them takes longer
# than to run them.
function(ulvak_test_code target)
  set(ULVAK_HARDENING_FLAGS "")  # which take optimised code
  set(ULVAK_HARDENING_LINKS "")
  ulvak_common(${target})
  target_compile_options(${target} PRIVATE -O0)
endfunction()

# ulvak_run_tests(<program> <folder> [<pattern>...]): has ctest run the program once, for all of its tests but those that
# a pattern names. Those have a process each: they change what a process has only one of and never gets back, or
# take a disk for themselves.
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

# ulvak_test(<folder> [NAME <name>] [OWN_MAIN] SOURCES <files>... LIBRARIES <targets>... ALONE <patterns>...): the
# binary <folder>_tests, or <name>_tests where a folder has several. With OWN_MAIN one of the sources has the main
# function. For ALONE see above.
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
  # The toolkit's code is compiled with other flags.
  if(arg_OWN_MAIN)
    ulvak_precompile_test_headers(${program} <QtTest>)
  elseif(TARGET ulvak_test_headers)
    target_precompile_headers(${program} REUSE_FROM ulvak_test_headers)
  endif()
  ulvak_run_tests(${program} ${folder} ${arg_ALONE})
endfunction()
