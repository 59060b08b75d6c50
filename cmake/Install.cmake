# Where a copy of the game puts its files, and the packages made of it; packaging/README.md tells of the layout.
set(KV_HOME "lib/mornal")
set(KV_SHARE "share/mornal")

# The day that the manual and the software centres name: that of the sources, not of the build.
if(DEFINED ENV{SOURCE_DATE_EPOCH})
    string(TIMESTAMP KV_RELEASE_DATE "%Y-%m-%d" UTC)
else()
    execute_process(COMMAND git -C "${CMAKE_SOURCE_DIR}" log -1 --format=%cs
        OUTPUT_VARIABLE KV_RELEASE_DATE OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
endif()

# Libraries come from lib/ beside bin/ where a copy brings them along; theirs look there, too, hence no new tags.
set_target_properties(kaVel PROPERTIES INSTALL_RPATH "$ORIGIN/../lib")
target_link_options(kaVel PRIVATE "LINKER:--disable-new-dtags")
install(TARGETS kaVel RUNTIME_DEPENDENCY_SET kv_libraries RUNTIME DESTINATION "${KV_HOME}/bin" COMPONENT game)

# What every desktop has, in the version that fits its drivers and servers, is left to it.
set(of_the_system "^lib(c|m|dl|rt|pthread|resolv|gcc_s|stdc\\+\\+)\\.so" "^ld-linux" "^lib(GL|EGL|GLX|GLdispatch|OpenGL)"
    "^libX(11|11-xcb|au|dmcp|ext|render|fixes|cursor|i|randr)\\." "^libxcb" "^libxkbcommon" "^libwayland" "^libdrm" "^libgbm"
    "^libasound" "^libpulse" "^libdbus" "^libsystemd" "^libcap\\." "^libgcrypt" "^libgpg-error" "^libglib" "^libpcre"
    "^liblz" "^libzstd" "^libffi" "^libexpat")
install(RUNTIME_DEPENDENCY_SET kv_libraries PRE_EXCLUDE_REGEXES ${of_the_system}
    LIBRARY DESTINATION "${KV_HOME}/lib" COMPONENT libraries)

install(FILES "${KV_PYTHON_ZIP}" DESTINATION "${KV_SHARE}" COMPONENT game)
install(DIRECTORY "${CMAKE_SOURCE_DIR}/assets" DESTINATION "${KV_SHARE}" COMPONENT game)
install(DIRECTORY "${CMAKE_SOURCE_DIR}/scripts" DESTINATION "${KV_SHARE}" COMPONENT game
    PATTERN "__pycache__" EXCLUDE)
foreach(size 16 24 32 48 64 128 256 512)
    install(FILES "${CMAKE_SOURCE_DIR}/assets/icons/mornal-${size}.png" RENAME mornal.png COMPONENT game
        DESTINATION "share/icons/hicolor/${size}x${size}/apps")
endforeach()

set(KV_PACKAGING "${CMAKE_SOURCE_DIR}/packaging")
foreach(file mornal.6 net.mornal.Mornal.metainfo.xml)
    configure_file("${KV_PACKAGING}/${file}" "${CMAKE_BINARY_DIR}/packaging/${file}" @ONLY)
endforeach()
install(FILES "${KV_PACKAGING}/mornal.desktop" DESTINATION "share/applications" COMPONENT game)
install(FILES "${CMAKE_BINARY_DIR}/packaging/net.mornal.Mornal.metainfo.xml"
    DESTINATION "share/metainfo" COMPONENT game)
install(FILES "${CMAKE_BINARY_DIR}/packaging/mornal.6" DESTINATION "share/man/man6" COMPONENT game)
install(DIRECTORY examples DESTINATION share/doc/mornal COMPONENT game PATTERN "__pycache__" EXCLUDE)
install(FILES CHANGELOG.md LICENSE "${KV_PACKAGING}/copyright"
    DESTINATION "share/doc/mornal" COMPONENT game)

# Links, the compiled scripts and the licences of the libraries, in the folder that is being filled.
install(CODE "execute_process(COMMAND \"${KV_PYTHON_LIBRARY_HOST}\" -I \"${KV_PACKAGING}/finish.py\"
        \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}\" \"${KV_HOME}\" \"${KV_SHARE}\" \"bin\"
        COMMAND_ERROR_IS_FATAL ANY)" COMPONENT game)
install(CODE "execute_process(COMMAND \"${KV_PYTHON_LIBRARY_HOST}\" -I \"${KV_PACKAGING}/licences.py\"
        \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${KV_HOME}/lib\"
        \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/share/doc/mornal/libraries\"
        COMMAND_ERROR_IS_FATAL ANY)" COMPONENT libraries)

set(CPACK_PACKAGE_NAME "mornal")
set(CPACK_PACKAGE_VENDOR "the authors of Mornal")
set(CPACK_PACKAGE_CONTACT "the authors of Mornal <authors@mornal.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "first-person horror game in dark interiors")
set(CPACK_PACKAGE_DESCRIPTION_FILE "${KV_PACKAGING}/description.txt")
set(CPACK_RESOURCE_FILE_LICENSE "${CMAKE_SOURCE_DIR}/LICENSE")
set(CPACK_PACKAGE_FILE_NAME "mornal-${PROJECT_VERSION}-${CMAKE_SYSTEM_PROCESSOR}")
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_GENERATOR "TXZ;DEB")
set(CPACK_THREADS 0)
set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
set(CPACK_PROJECT_CONFIG_FILE "${KV_PACKAGING}/CPackProject.cmake")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION games)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Opened by name as the game starts, so that no table of the executable tells of them.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libgl1, libegl1, libgl1-mesa-dri")
include(CPack)
