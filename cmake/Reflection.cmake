# The static reflection table: Doxygen reads the headers, tools/reflect/ writes the C++ of the table.
#
# The generator runs whenever a header has changed and rewrites only the files whose content differs, so that the
# compiler sees no more than what the change touches.
find_program(DOXYGEN doxygen REQUIRED)
find_program(KV_PYTHON NAMES python3 PATHS /usr/bin NO_DEFAULT_PATH)
find_program(KV_PYTHON NAMES python3 REQUIRED)

set(KV_REFLECT_DIR "${CMAKE_SOURCE_DIR}/tools/reflect")
file(GLOB KV_REFLECT_SCRIPTS CONFIGURE_DEPENDS "${KV_REFLECT_DIR}/*.py" "${KV_REFLECT_DIR}/*.pyi")
set(KV_REFLECTION_OUT "${CMAKE_BINARY_DIR}/reflection")
set(KV_REFLECTION_MODEL "${KV_REFLECTION_OUT}/engine.model")

# Headers a generated source file describes at most. Fewer make more files, of which each costs the parsing of the
# headers below it; more make a change of one header dearer.
set(KV_HEADERS_PER_PART 20)

# Adds the generator's run for a table to a target.
function(kv_reflect target)
    cmake_parse_arguments(ARG "" "" "FOLDERS;OPTIONS;BYPRODUCTS;DEPENDS" ${ARGN})
    set(out "${KV_REFLECTION_OUT}/${target}")
    set(stamp "${out}.stamp")
    set(sources "${out}/Table.cpp")
    set(slots)
    set(headers)
    foreach(folder IN LISTS ARG_FOLDERS)
        file(GLOB_RECURSE found CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/${folder}/*.h")
        list(LENGTH found count)
        if(count EQUAL 0)
            continue()
        endif()
        math(EXPR parts "(${count} + ${KV_HEADERS_PER_PART} - 1) / ${KV_HEADERS_PER_PART}")
        list(APPEND slots --slot "${folder}=${parts}")
        list(APPEND headers ${found})
        get_filename_component(name "${folder}" NAME)
        math(EXPR last "${parts} - 1")
        foreach(part RANGE ${last})
            list(APPEND sources "${out}/${name}_${part}.cpp")
        endforeach()
    endforeach()
    if(NOT headers)
        return()
    endif()

    add_custom_command(
        OUTPUT "${stamp}"
        BYPRODUCTS ${sources} ${ARG_BYPRODUCTS}
        COMMAND "${KV_PYTHON}" -B "${KV_REFLECT_DIR}/generate.py" --doxygen "${DOXYGEN}" --source "${CMAKE_SOURCE_DIR}"
                --table ${target} --out "${out}" ${slots} ${ARG_OPTIONS}
        COMMAND "${CMAKE_COMMAND}" -E touch "${stamp}"
        DEPENDS ${headers} ${KV_REFLECT_SCRIPTS} ${ARG_DEPENDS}
        COMMENT "Reflecting ${target}"
        VERBATIM)
    # Line tables of generated invokers tell nobody anything; their names stay in stack traces.
    set_source_files_properties(${sources} PROPERTIES GENERATED TRUE COMPILE_OPTIONS "-g0")
    target_sources(${target} PRIVATE ${sources} "${stamp}")
endfunction()

# Defines the object library of the engine's own table.
function(kv_add_engine_reflection target)
    add_library(${target} OBJECT)
    set(folders)
    foreach(folder IN LISTS KV_FOLDERS ITEMS main)
        if(NOT folder STREQUAL "port" AND IS_DIRECTORY "${CMAKE_SOURCE_DIR}/src/${folder}")
            list(APPEND folders "src/${folder}")
        endif()
    endforeach()
    kv_reflect(${target}
        FOLDERS ${folders}
        OPTIONS --include-root src --no-invokers src/object/reflection/ARInvokers.h
                --export-model "${KV_REFLECTION_MODEL}"
                --stubs "${CMAKE_SOURCE_DIR}/scripts/_kaVel.pyi"
                --names "${KV_REFLECTION_OUT}/names.txt"
                --reference "${CMAKE_BINARY_DIR}/docs"
        BYPRODUCTS "${KV_REFLECTION_MODEL}" "${KV_REFLECTION_OUT}/names.txt")
endfunction()

# kv_add_reflection(<target> EMIT <folder>...): gives a program reflected classes of its own.
#
# Describes the headers below the folders in a table that joins the engine's when the program starts. Folders without
# headers add nothing.
function(kv_add_reflection target)
    cmake_parse_arguments(ARG "" "" "EMIT" ${ARGN})
    kv_reflect(${target}
        FOLDERS ${ARG_EMIT}
        OPTIONS --include-root src --include-root tests --include-root benchmarks --include-root benchmarks/peers
                --import-model "${KV_REFLECTION_MODEL}"
        DEPENDS "${KV_REFLECTION_MODEL}")
endfunction()
