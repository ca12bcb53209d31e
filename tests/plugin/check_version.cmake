# Fails unless the module contains its name and version.
# Call: cmake -DMODULE=path -DVERSION=version -P check_version.cmake
file(STRINGS ${MODULE} texts REGEX "^Word Sifter [0-9.]+$")
list(REMOVE_DUPLICATES texts)  # without optimization, the text is there twice
if(NOT texts STREQUAL "Word Sifter ${VERSION}")
    message(FATAL_ERROR "the module contains '${texts}' instead of version ${VERSION}")
endif()
