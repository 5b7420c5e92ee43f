# One function per sort of target, so that a folder's CMakeLists.txt only says what is special.

find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
find_package(ICU REQUIRED COMPONENTS uc i18n)

add_library(kestrel_options INTERFACE)
target_compile_features(kestrel_options INTERFACE cxx_std_20)
target_include_directories(kestrel_options INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(kestrel_options INTERFACE
  -Wall -Wextra -Wpedantic -Wnon-virtual-dtor -Wold-style-cast
  -Woverloaded-virtual $<$<CXX_COMPILER_ID:GNU>:-Wshadow=local>
  -Wimplicit-fallthrough)
target_link_libraries(kestrel_options INTERFACE Threads::Threads)
if(KESTREL_SANITIZE)
  # With sanitizers, g++ 12 takes the inactive members of a std::variant for uninitialized.
  # Checks of every reference for null and alignment are a third of what is left: a null one is a
  # crash anyway, and a misaligned one none on the machines that Kestrel runs on.
  target_compile_options(kestrel_options INTERFACE
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>
    -fsanitize=${KESTREL_SANITIZE} -fno-sanitize=null,alignment -fno-sanitize-recover=all
    -fno-omit-frame-pointer)
  target_link_options(kestrel_options INTERFACE -fsanitize=${KESTREL_SANITIZE})
endif()

# kestrel_library(<name> [SOURCES a.cpp ...] [DEPS kestrel_x ...]): static library kestrel_<name>.
# Without SOURCES, of all sources of this folder.
function(kestrel_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPS" ${ARGN})
  if(NOT ARG_SOURCES)
    file(GLOB ARG_SOURCES CONFIGURE_DEPENDS *.cpp)
  endif()
  add_library(kestrel_${name} STATIC ${ARG_SOURCES})
  target_link_libraries(kestrel_${name} PUBLIC kestrel_options ${ARG_DEPS})
endfunction()

# What only tests call is compiled for the sake of the build: its speed is no one's wait.
function(kestrel_compile_quickly target)
  target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:-O0>)
endfunction()

# kestrel_test(<name> [DEPS kestrel_x ...]): test program test_<name> of this folder's sources.
function(kestrel_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPS" ${ARGN})
  if(NOT ARG_SOURCES)
    file(GLOB ARG_SOURCES CONFIGURE_DEPENDS *_test.cpp)
  endif()
  add_executable(test_${name} ${ARG_SOURCES})
  target_link_libraries(test_${name} PRIVATE ${ARG_DEPS} kestrel_options GTest::gtest_main)
  kestrel_compile_quickly(test_${name})
  set_target_properties(test_${name} PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests)
  gtest_discover_tests(test_${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 600)
endfunction()
