# What CPack packs: a .tar.gz and a .deb on Linux, a .zip on Windows. scripts/package.sh uses it.
set(WORD_SIFTER_MAINTAINER "Word Sifter maintainers <maintainers@word-sifter.example>" CACHE STRING
    "Name and address of whoever publishes the packages")

install(FILES CHANGELOG.md docs/install.md packaging/copyright
    DESTINATION share/doc/word-sifter COMPONENT documentation)

set(CPACK_PACKAGE_NAME word-sifter)
set(CPACK_PACKAGE_VENDOR "Word Sifter")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "plug-in that turns text from devices into values, with a tool")
set(CPACK_PACKAGE_DESCRIPTION
    "Word Sifter is a plug-in for Quendal. It cuts text from serial devices,
sensors and instruments into messages, matches each message against a
parsing string that the user writes, and sends the captured values to its
outputs.
.
The package contains the plug-in with its help page, the program sift, which
runs the plug-in over messages in a terminal, and the engine as a library.")
set(CPACK_PACKAGE_FILE_NAME
    word-sifter-${PROJECT_VERSION}-${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR})
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
if(WIN32)
    set(CPACK_GENERATOR ZIP)
else()
    set(CPACK_GENERATOR TGZ DEB)
endif()
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/packaging/finish_files.cmake)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${WORD_SIFTER_MAINTAINER})
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
include(CPack)
