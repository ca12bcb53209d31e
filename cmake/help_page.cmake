# Sets word_sifter_help_page to the page that is installed. The one with the try-it box comes from a
# build of its own, because that needs another compiler.
set(WORD_SIFTER_HELP_PAGE "" CACHE FILEPATH
    "The help page to install, as scripts/page.sh builds it; if empty, this build makes one")
option(WORD_SIFTER_WEB "Build the help page with its try-it box, if Emscripten is installed" ON)

set(word_sifter_help_page ${PROJECT_SOURCE_DIR}/docs/read-serial-docs.html)
find_program(EMCMAKE emcmake)
if(WORD_SIFTER_HELP_PAGE)
    get_filename_component(word_sifter_help_page ${WORD_SIFTER_HELP_PAGE} ABSOLUTE
        BASE_DIR ${PROJECT_SOURCE_DIR})
elseif(WORD_SIFTER_WEB AND EMCMAKE)
    include(ExternalProject)
    ExternalProject_Add(word_sifter_page
        SOURCE_DIR ${PROJECT_SOURCE_DIR}
        BINARY_DIR ${PROJECT_BINARY_DIR}/page
        CONFIGURE_COMMAND ${EMCMAKE} ${CMAKE_COMMAND} -S <SOURCE_DIR> -B <BINARY_DIR>
            -G ${CMAKE_GENERATOR} -DCMAKE_BUILD_TYPE=Release
        BUILD_COMMAND ${CMAKE_COMMAND} --build <BINARY_DIR>
        BUILD_ALWAYS ON
        INSTALL_COMMAND "")
    set(word_sifter_help_page ${PROJECT_BINARY_DIR}/page/read-serial-docs.html)
else()
    message(STATUS "The installed help page has no try-it box: that needs Emscripten and \
WORD_SIFTER_WEB")
endif()
