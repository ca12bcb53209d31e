# Compiler and linker flags of all targets. Every target links word_sifter_flags.
add_library(word_sifter_flags INTERFACE)
target_include_directories(word_sifter_flags INTERFACE ${PROJECT_SOURCE_DIR})
if(MSVC)
    target_compile_options(word_sifter_flags INTERFACE /W4 /permissive- /utf-8)
    if(WORD_SIFTER_WERROR)
        target_compile_options(word_sifter_flags INTERFACE /WX)
    endif()
else()
    target_compile_options(word_sifter_flags INTERFACE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion
        # A value of an enumeration that a switch does not handle is always an error.
        -Werror=switch)
    if(WORD_SIFTER_WERROR)
        target_compile_options(word_sifter_flags INTERFACE -Werror)
    endif()
endif()
if(WORD_SIFTER_SANITIZE)
    target_compile_options(word_sifter_flags INTERFACE
        -fsanitize=${WORD_SIFTER_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(word_sifter_flags INTERFACE -fsanitize=${WORD_SIFTER_SANITIZE})
endif()
