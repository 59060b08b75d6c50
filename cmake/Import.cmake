# kaVelImport, the tool that makes model files. It needs a library that ./play does not install, so without that the
# target is left out; ./import-model and ./check install it.
pkg_check_modules(ASSIMP QUIET IMPORTED_TARGET assimp)
if(NOT ASSIMP_FOUND)
    message(STATUS "libassimp-dev is not installed: kaVelImport is left out")
    return()
endif()

file(GLOB import_sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/tools/import/*.cpp")
add_executable(kaVelImport EXCLUDE_FROM_ALL ${import_sources} ${KV_MESH_OBJECTS})
target_include_directories(kaVelImport PRIVATE "${CMAKE_SOURCE_DIR}/tools/import")
target_link_libraries(kaVelImport PRIVATE kv_foundation kv_port PkgConfig::ASSIMP)
