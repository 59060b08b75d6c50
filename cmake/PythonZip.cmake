# The interpreter's library as one archive beside the game; the running game reads it from ../python.zip.
find_program(KV_PYTHON_LIBRARY_HOST NAMES python3.11 PATHS /usr/bin NO_DEFAULT_PATH REQUIRED)
execute_process(COMMAND "${KV_PYTHON_LIBRARY_HOST}" -c "import os; print(os.__file__)"
    OUTPUT_VARIABLE KV_PYTHON_LIBRARY_FILE OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)

set(KV_PYTHON_ZIP "${KV_GAME_DIR}/python.zip")
add_custom_command(OUTPUT "${KV_PYTHON_ZIP}"
    COMMAND "${KV_PYTHON_LIBRARY_HOST}" -I "${CMAKE_SOURCE_DIR}/tools/make_python_zip.py" "${KV_PYTHON_ZIP}"
    COMMAND "${CMAKE_COMMAND}" -E touch "${KV_PYTHON_ZIP}"
    DEPENDS "${CMAKE_SOURCE_DIR}/tools/make_python_zip.py" "${KV_PYTHON_LIBRARY_FILE}"
    COMMENT "Packing the Python library" VERBATIM)
add_custom_target(kv_python_zip ALL DEPENDS "${KV_PYTHON_ZIP}")
