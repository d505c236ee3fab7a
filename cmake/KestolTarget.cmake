# What every target of this project shares: the language, the include root, warnings, sanitizers.
function(kestol_target target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF)
  target_include_directories(${target} PUBLIC
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/kestol>)
  # The compiler shall not choose digits: no contraction of a*b+c behind our back. The kernels of the
  # factorisation fuse products where the processor can, on purpose; only last digits follow it.
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                                           -Wno-sign-conversion -Wnon-virtual-dtor
                                           -Woverloaded-virtual -ffp-contract=off)
  if(KESTOL_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(KESTOL_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=address,undefined,float-cast-overflow
                                             -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${target} PUBLIC -fsanitize=address,undefined)
  endif()
endfunction()

# Test code is compiled for speed of building: it is the core that has to be fast. When it optimises,
# GCC 12 sees overflows in concatenated strings that are not there.
function(kestol_test_target target)
  kestol_target(${target})
  target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:-O1> -Wno-array-bounds -Wno-restrict
                                           $<$<CXX_COMPILER_ID:GNU>:-Wno-stringop-overflow>)
endfunction()

# A test program of the given sources: GoogleTest, the core, and a fatal exit that throws.
function(kestol_test name)
  add_executable(${name} ${ARGN})
  kestol_test_target(${name})
  target_link_libraries(${name} PRIVATE kestol_test_support)
  target_precompile_headers(${name} REUSE_FROM kestol_test_support)
  gtest_discover_tests(${name} TEST_PREFIX "${name}." DISCOVERY_MODE PRE_TEST)
endfunction()
