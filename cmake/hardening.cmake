# Flags of all targets that make a fault harder to exploit. The sanitizers replace them. MSVC and
# Apple's tools have theirs on already.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

if(MINGW)
    # Without the time of the build, so that a second build has the same bytes.
    target_link_options(word_sifter_flags INTERFACE
        "LINKER:--dynamicbase,--nxcompat,--high-entropy-va,--no-insert-timestamp")
elseif(NOT MSVC AND NOT APPLE AND NOT EMSCRIPTEN AND NOT WORD_SIFTER_SANITIZE)
    target_compile_options(word_sifter_flags INTERFACE -fstack-protector-strong
        $<$<CONFIG:Release,RelWithDebInfo>:-U_FORTIFY_SOURCE>
        $<$<CONFIG:Release,RelWithDebInfo>:-D_FORTIFY_SOURCE=2>)
    target_link_options(word_sifter_flags INTERFACE "LINKER:-z,relro,-z,now,-z,noexecstack")
endif()
