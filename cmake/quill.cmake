# What every target of the project is built with, and the short ways to declare one.

add_library(quill_options INTERFACE)
target_include_directories(quill_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_compile_options(quill_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wnon-virtual-dtor -Woverloaded-virtual
    -Wimplicit-fallthrough -Werror
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)  # GCC 12 sees overlaps in std::string::insert that cannot be (its bug 105651)

# Hardening: packaging/check_hardening.py looks for each of these in what was built. Code for Qt is position-independent by
# Qt's own wish, in the stricter way. The C library's checks need an optimiser, and the sanitizers bring their own.
target_compile_options(quill_options INTERFACE
    $<$<NOT:$<BOOL:$<TARGET_PROPERTY:POSITION_INDEPENDENT_CODE>>>:-fPIE>
    -fstack-protector-strong -fstack-clash-protection)
target_compile_definitions(quill_options INTERFACE _GLIBCXX_ASSERTIONS)
target_link_options(quill_options INTERFACE -pie -Wl,-z,relro,-z,now,-z,noexecstack)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i.86)$")
    target_compile_options(quill_options INTERFACE -fcf-protection=full)
endif()
if(NOT QUILL_SANITIZE)
    set(optimised $<AND:$<CONFIG:Release,RelWithDebInfo,MinSizeRel>,$<NOT:$<BOOL:$<TARGET_PROPERTY:QUILL_BUILD_FAST>>>>)
    target_compile_options(quill_options INTERFACE $<${optimised}:-U_FORTIFY_SOURCE> $<${optimised}:-D_FORTIFY_SOURCE=2>)
endif()

if(QUILL_SANITIZE)
    target_compile_options(quill_options INTERFACE -fsanitize=${QUILL_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(quill_options INTERFACE -fsanitize=${QUILL_SANITIZE})
endif()
if(QUILL_FUZZ)
    # Every library counts the edges that a fuzzer's input takes; the fuzzers alone bring libFuzzer's main.
    # Without the depth of the stack, which differs from run to run: the same inputs then take the same way through a fuzzer.
    target_compile_options(quill_options INTERFACE -fsanitize=fuzzer-no-link -fno-sanitize-coverage=stack-depth)
endif()

# quill_small_library(TARGET PACKAGE FILE): a library of the system, linked statically where it is there for that: to load
# one takes a millisecond at each start of a program, as long as all of a small file's decoding.
find_package(PkgConfig REQUIRED)
function(quill_small_library target package file)
    pkg_check_modules(${target} REQUIRED IMPORTED_TARGET ${package})
    find_library(${target}_archive ${file} HINTS ${${target}_LIBRARY_DIRS})
    add_library(${target} INTERFACE)
    if(QUILL_STATIC_LIBRARIES AND ${target}_archive)
        target_include_directories(${target} INTERFACE ${${target}_INCLUDE_DIRS})
        target_link_libraries(${target} INTERFACE ${${target}_archive})
    else()
        target_link_libraries(${target} INTERFACE PkgConfig::${target})
    endif()
endfunction()
quill_small_library(quill_zlib zlib libz.a)
quill_small_library(quill_libdeflate libdeflate libdeflate.a)

# quill_library(NAME [lib...]): the static library quill_NAME of every source in the calling folder and the folders in it, on
# the named libraries.
function(quill_library name)
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*/*.cpp)
    if(sources)
        add_library(quill_${name} STATIC ${sources})
        target_link_libraries(quill_${name} PUBLIC quill_options ${ARGN})
    else()
        add_library(quill_${name} INTERFACE)
        target_link_libraries(quill_${name} INTERFACE quill_options ${ARGN})
    endif()
endfunction()

# quill_build_fast(TARGET): for what runs once, so that its build takes longer than its run.
function(quill_build_fast target)
    target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:-O0>)
    set_target_properties(${target} PROPERTIES QUILL_BUILD_FAST ON)
endfunction()

# quill_test(NAME [lib...]): one test program of every *_test.cpp in the calling folder, each of its cases known to ctest.
function(quill_test name)
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*_test.cpp)
    if(sources)
        add_executable(${name}_tests ${sources})
        target_link_libraries(${name}_tests PRIVATE quill_options ${ARGN} GTest::gmock GTest::gtest_main)
        target_include_directories(${name}_tests PRIVATE ${PROJECT_SOURCE_DIR}/tests)
        quill_build_fast(${name}_tests)
        if(QUILL_PRECOMPILE)
            target_precompile_headers(${name}_tests REUSE_FROM quill_test_support)
        endif()
        target_compile_definitions(${name}_tests PRIVATE QUILL_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data")
        gtest_discover_tests(${name}_tests DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 120)
    endif()
endfunction()
