# The scripts in compiled form beside their sources, so that a start need not compile them. Each names the hash of its
# source: one that is changed later is compiled as the game reads it, and so are all where the folder cannot be written.
file(GLOB_RECURSE scripts CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/scripts/*.py")
set(KV_COMPILED_SCRIPTS "${CMAKE_BINARY_DIR}/scripts.compiled")
add_custom_command(OUTPUT "${KV_COMPILED_SCRIPTS}"
    COMMAND "${KV_PYTHON_LIBRARY_HOST}" -m compileall -q -q --invalidation-mode checked-hash
        "${CMAKE_SOURCE_DIR}/scripts" || "${CMAKE_COMMAND}" -E true
    COMMAND "${CMAKE_COMMAND}" -E touch "${KV_COMPILED_SCRIPTS}"
    DEPENDS ${scripts} COMMENT "Compiling the scripts" VERBATIM)
add_custom_target(kv_compiled_scripts ALL DEPENDS "${KV_COMPILED_SCRIPTS}")
