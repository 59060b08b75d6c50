# Compiler cache, fast linker, warnings and sanitizers: everything about the tools, nothing about the project.
find_program(CCACHE ccache)
if(CCACHE)
    # Paths count from the checkout, so that a second one of the same sources finds what the first compiled.
    set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env "CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}" CCACHE_NOHASHDIR=1
        "${CCACHE}")
endif()
find_program(MOLD mold)
if(MOLD)
    add_link_options(-fuse-ld=mold)
endif()

# Log lines, assertions and stack traces name files from the repository's root, on every machine alike; the compiler's
# cache hands it paths that start at the build folder.
file(RELATIVE_PATH KV_ROOT_FROM_BUILD "${CMAKE_BINARY_DIR}" "${CMAKE_SOURCE_DIR}/")
add_compile_options("-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=" "-ffile-prefix-map=${KV_ROOT_FROM_BUILD}=")
add_compile_options(-Wall -Wextra -Wno-unused-parameter -fno-math-errno)
# A place that silences a warning of one compiler may name what the other does not know.
add_compile_options($<$<CXX_COMPILER_ID:Clang>:-Wno-unknown-warning-option>)
# With the compilers that ./check runs, a warning is an error, and for everybody alike: a switch of ./check alone would
# have it build anew what ./play has built. The sanitizers' code has the compiler see warnings that are none.
set(werror OFF)
if("${CMAKE_CXX_COMPILER_ID} ${CMAKE_CXX_COMPILER_VERSION}" MATCHES "^(GNU 12|Clang 14)\\."
        AND CMAKE_BUILD_TYPE STREQUAL "RelWithDebInfo" AND NOT KV_SANITIZE)
    set(werror ON)
endif()
option(KV_WERROR "Treat warnings as errors" ${werror})
if(KV_WERROR)
    add_compile_options(-Werror)
endif()
# Runs repeat to the last bit, on every compiler and processor: none may fuse a product with a sum.
add_compile_options(-ffp-contract=off)
# Symbols of the executable itself, so that stack traces name functions.
add_link_options(-rdynamic)

if(KV_SANITIZE)
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
    add_compile_definitions(KV_SANITIZE)
    # The image library copies nothing from a null pointer for an empty chunk. Its addresses are still checked.
    set_source_files_properties("${CMAKE_SOURCE_DIR}/src/port/d3dx9/StbImage.cpp"
        PROPERTIES COMPILE_OPTIONS "-fno-sanitize=undefined")
    # Boost.Python asks a holder for its most derived address after the holder's destructor has run.
    file(GLOB KV_BOOST_PYTHON_SOURCES "${CMAKE_SOURCE_DIR}/src/*/*/Python*.cpp"
        "${CMAKE_SOURCE_DIR}/src/object/python/ObjectChildren*.cpp" "${CMAKE_SOURCE_DIR}/tests/python/*.cpp")
    set_source_files_properties(${KV_BOOST_PYTHON_SOURCES} PROPERTIES COMPILE_OPTIONS "-fno-sanitize=vptr")
endif()
