# The packaged libraries that the port and the object layer call. tools/packages.txt installs them.
find_package(PkgConfig REQUIRED)
pkg_check_modules(SDL2 REQUIRED IMPORTED_TARGET sdl2)
pkg_check_modules(EPOXY REQUIRED IMPORTED_TARGET epoxy)
pkg_check_modules(IMGUI REQUIRED imgui)
pkg_check_modules(PYTHON REQUIRED IMPORTED_TARGET python-3.11-embed)
pkg_check_modules(FREETYPE REQUIRED freetype2)
pkg_check_modules(HARFBUZZ REQUIRED harfbuzz)
pkg_check_modules(OPENAL REQUIRED openal)
pkg_check_modules(SNDFILE REQUIRED sndfile)
find_library(BOOST_PYTHON_LIBRARY NAMES boost_python311 REQUIRED)
# Comes with g++, which finds its header alone; for another compiler it is the last place to look.
find_library(BACKTRACE_LIBRARY NAMES backtrace PATHS /usr/lib/gcc/x86_64-linux-gnu/12)
find_path(BACKTRACE_HEADER NAMES backtrace.h PATHS /usr/lib/gcc/x86_64-linux-gnu/12/include)

add_library(kv_dependencies INTERFACE)
target_include_directories(kv_dependencies INTERFACE "${CMAKE_SOURCE_DIR}/src")
target_link_libraries(kv_dependencies INTERFACE PkgConfig::SDL2 PkgConfig::EPOXY PkgConfig::PYTHON
    ${BOOST_PYTHON_LIBRARY} ${FREETYPE_LINK_LIBRARIES} ${HARFBUZZ_LINK_LIBRARIES} ${IMGUI_LINK_LIBRARIES}
    ${OPENAL_LINK_LIBRARIES} ${SNDFILE_LINK_LIBRARIES} ${CMAKE_DL_LIBS})
# One source file reads the font libraries' headers; no other is to see them.
set_source_files_properties("${CMAKE_SOURCE_DIR}/src/assets/fonts/FontFace.cpp" PROPERTIES
    INCLUDE_DIRECTORIES "${FREETYPE_INCLUDE_DIRS};${HARFBUZZ_INCLUDE_DIRS}")
# Boost.Python's own headers include what Boost has deprecated since, and would tell about it in every file.
target_compile_definitions(kv_dependencies INTERFACE BOOST_ALLOW_DEPRECATED_HEADERS BOOST_BIND_GLOBAL_PLACEHOLDERS)
if(BACKTRACE_LIBRARY AND BACKTRACE_HEADER)
    target_link_libraries(kv_dependencies INTERFACE ${BACKTRACE_LIBRARY})
    target_compile_definitions(kv_dependencies INTERFACE KV_HAVE_BACKTRACE)
    set_source_files_properties("${CMAKE_SOURCE_DIR}/src/port/dbghelp/DbgHelp.cpp" PROPERTIES
        COMPILE_OPTIONS "-idirafter;${BACKTRACE_HEADER}")
endif()
