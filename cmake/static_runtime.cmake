# The target word_sifter_runtime, which the module and sift link: their C++ runtime.
include(CheckCXXSourceCompiles)
include(CMakeDependentOption)
include(CMakePushCheckState)

add_library(word_sifter_runtime INTERFACE)

# A host may bring a libstdc++ older than that of this compiler, and would refuse a module that
# needs the newer one; sift runs on a system with an older one, too. The check fails where the
# runtime is another or has no static form.
# libgcc_s stays shared on Linux, where the unwinder of a second one aborts as soon as an exception
# of the program reaches the module. What the module needs of it is in each libgcc_s there is.
if((CMAKE_SYSTEM_NAME STREQUAL "Linux" OR MINGW) AND NOT WORD_SIFTER_SANITIZE)
    if(MINGW)
        set(static_runtime -static)  # libstdc++ needs a library of threads
    else()
        set(static_runtime -static-libstdc++ -shared-libgcc)
    endif()
    cmake_push_check_state(RESET)
    set(CMAKE_REQUIRED_LINK_OPTIONS ${static_runtime})
    check_cxx_source_compiles("
        #include <string>
        #ifndef __GLIBCXX__
        #error
        #endif
        int main(int count, char** arguments) { throw std::string(arguments[count - 1]); }"
        WORD_SIFTER_HAS_STATIC_RUNTIME)
    cmake_pop_check_state()
endif()
cmake_dependent_option(WORD_SIFTER_STATIC_RUNTIME
    "Link the C++ runtime into the module and into sift" ON
    "WORD_SIFTER_HAS_STATIC_RUNTIME;NOT WORD_SIFTER_SANITIZE" OFF)
if(WORD_SIFTER_STATIC_RUNTIME)
    target_link_options(word_sifter_runtime INTERFACE ${static_runtime})
    if(NOT MINGW)  # most of the runtime is unused, and needs a newer C library
        target_link_options(word_sifter_runtime INTERFACE "LINKER:--gc-sections")
    endif()
endif()
