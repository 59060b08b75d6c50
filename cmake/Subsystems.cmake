# One object library a folder of src/, and the one executable made of all of them.
set(KV_FOLDERS port foundation object engine assets physics platform rendering ai gameplay ui tools)
set(KV_LIBRARIES)
foreach(folder IN LISTS KV_FOLDERS)
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/src/${folder}/*.cpp")
    if(sources)
        add_library(kv_${folder} OBJECT ${sources})
        target_link_libraries(kv_${folder} PUBLIC kv_dependencies)
        list(APPEND KV_LIBRARIES kv_${folder})
    endif()
endforeach()

# The part of assets that stands below the object tree, for programs that handle model files without the engine.
string(CONCAT mesh_objects "/(BulkAllocator|Mesh|Mesh(Bounds|Builder|Normals|Shapes|Solids|Texturing|Welding)|ModelFile"
    "|PlaneTriangulation|PolygonTriangulator)\\.cpp")
set(KV_MESH_OBJECTS "$<FILTER:$<TARGET_OBJECTS:kv_assets>,INCLUDE,${mesh_objects}>")

kv_add_engine_reflection(kv_reflection)
target_link_libraries(kv_reflection PUBLIC kv_dependencies)
list(APPEND KV_LIBRARIES kv_reflection)

file(GLOB_RECURSE main_sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/src/main/*.cpp")
set_source_files_properties("${CMAKE_SOURCE_DIR}/src/main/CommandLine.cpp" PROPERTIES
    COMPILE_DEFINITIONS "KV_VERSION=\"${PROJECT_VERSION}\"")
if(main_sources)
    add_executable(kaVel ${main_sources})
    target_link_libraries(kaVel PRIVATE ${KV_LIBRARIES})
    set_target_properties(kaVel PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${KV_GAME_DIR}/bin")
endif()

# The executable finds its content beside its own folder: ../scripts, ../assets, ../python.zip, and ../mods if there is.
file(MAKE_DIRECTORY "${KV_GAME_DIR}/bin")
foreach(content scripts assets mods)
    if(NOT EXISTS "${KV_GAME_DIR}/${content}" AND NOT IS_SYMLINK "${KV_GAME_DIR}/${content}")
        file(CREATE_LINK "${CMAKE_SOURCE_DIR}/${content}" "${KV_GAME_DIR}/${content}" SYMBOLIC)
    endif()
endforeach()

# What the executable needs beside itself at run time: the scripts' standard library, the generated editor stubs.
add_custom_target(kv_content)
