# word_sifter_describe(TARGET TYPE DESCRIPTION): on Windows, adds what the system shows as the
# properties of the file. TYPE: VFT_APP or VFT_DLL.
if(WIN32)
    enable_language(RC)
endif()
function(word_sifter_describe target type description)
    if(NOT WIN32)
        return()
    endif()
    string(REPLACE "." "," version_numbers ${PROJECT_VERSION})
    set(resource ${CMAKE_CURRENT_BINARY_DIR}/${target}_version.rc)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/version.rc.in ${resource} @ONLY)
    target_sources(${target} PRIVATE ${resource})
endfunction()
