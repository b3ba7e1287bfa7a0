# Hardening flags for what users run, to limit the damage of our own mistakes. Each is used if compiler and
# linker support it; scripts/package --check verifies that all took effect.

include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)

# Release builds only: the others are for debugging, and the tests in them are not optimised. Not with
# sanitizers, which see less if the library does its own checks. On macOS the compiler does it by default.
function(ulvak_find_hardening)
  if(NOT CMAKE_BUILD_TYPE MATCHES "^(Release|MinSizeRel)$" OR ULVAK_SANITIZE OR APPLE)
    return()
  endif()
  set(candidates -fstack-protector-strong -fstack-clash-protection)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|amd64|AMD64|i[3-6]86)$")
    list(APPEND candidates -fcf-protection=full)
  elseif(CMAKE_SYSTEM_PROCESSOR MATCHES "^(aarch64|arm64)$")
    list(APPEND candidates -mbranch-protection=standard)
  endif()
  set(flags -fPIE)  # targets that link Qt also get -fPIC, which comes later and wins
  foreach(flag IN LISTS candidates)
    string(MAKE_C_IDENTIFIER "ULVAK_HAS${flag}" known)
    check_cxx_compiler_flag(${flag} ${known})
    if(${known})
      list(APPEND flags ${flag})
    endif()
  endforeach()
  set(level 2)
  if((CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 12) OR
     (CMAKE_CXX_COMPILER_ID STREQUAL "Clang" AND CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 12))
    set(level 3)
  endif()
  # A distribution may have set its own level.
  list(APPEND flags -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=${level})
  set(ULVAK_HARDENING_FLAGS "${flags}" PARENT_SCOPE)

  set(links -pie)
  foreach(flag -Wl,-z,relro -Wl,-z,now)
    string(MAKE_C_IDENTIFIER "ULVAK_LINKS${flag}" known)
    check_linker_flag(CXX ${flag} ${known})
    if(${known})
      list(APPEND links ${flag})
    endif()
  endforeach()
  set(ULVAK_HARDENING_LINKS "${links}" PARENT_SCOPE)
endfunction()
