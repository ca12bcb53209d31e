# Builds the program in this folder in one of the ways that docs/engine.md describes, outside the
# sources, and compares its output. Call: cmake -D... -P run.cmake, with
#   WAY         Install: only installs the engine, for the ways Package and PkgConfig;
#               Package: find_package; Subdirectory: add_subdirectory; PkgConfig: the compiler alone;
#               Page: builds nothing, compares the program with its copy in docs/engine.md
#   BUILD       build folder of Word Sifter
#   VERSION     of Word Sifter
#   CXX, FLAGS  the compiler and its options, those of the sanitizers among them
#   GENERATOR, MAKE_PROGRAM, CONFIG  of the build folder
#   PKG_CONFIG  the program, for the way PkgConfig
cmake_minimum_required(VERSION 3.20)
get_filename_component(root ${CMAKE_CURRENT_LIST_DIR}/../.. ABSOLUTE)
set(scratch ${BUILD}/consumer)
set(prefix "${scratch}/moved tree")
set(source ${scratch}/${WAY})
set(program ${source}/bin/consumer)
set(config_option)
if(CONFIG)
    set(config_option --config ${CONFIG})
endif()
file(READ ${CMAKE_CURRENT_LIST_DIR}/main.cpp main)
file(READ ${CMAKE_CURRENT_LIST_DIR}/expected_output.txt expected_output)

# run(COMMAND...): sets status to the exit status, and text to all that the command prints.
function(run)
    execute_process(COMMAND ${ARGV} WORKING_DIRECTORY ${scratch}
        RESULT_VARIABLE status OUTPUT_VARIABLE text ERROR_VARIABLE text)
    set(status "${status}" PARENT_SCOPE)
    set(text "${text}" PARENT_SCOPE)
endfunction()

# must_run(COMMAND...): the same, but stops unless the command succeeds.
function(must_run)
    run(${ARGV})
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "failed: ${ARGV}\n${text}")
    endif()
    set(text "${text}" PARENT_SCOPE)
endfunction()

# must_fail(TEXT COMMAND...): stops unless the command fails and prints TEXT.
function(must_fail expected_text)
    run(${ARGN})
    string(FIND "${text}" "${expected_text}" place)
    if(status EQUAL 0 OR place EQUAL -1)
        message(FATAL_ERROR "must fail with '${expected_text}': ${ARGN}\n${text}")
    endif()
endfunction()

# The tree is moved before use: no file in it may contain the place where it was installed.
function(install_engine)
    unset(ENV{DESTDIR})
    file(REMOVE_RECURSE ${scratch}/installed ${prefix})
    must_run(${CMAKE_COMMAND} --install ${BUILD} ${config_option} --component engine
        --prefix ${scratch}/installed)
    file(RENAME ${scratch}/installed ${prefix})
endfunction()

# Both of these set build to the command that makes the program from ${source}/main.cpp.

function(prepare_cmake_build)
    set(configure ${CMAKE_COMMAND} -S ${source} -B ${source}/build -G ${GENERATOR}
        -DCMAKE_MAKE_PROGRAM=${MAKE_PROGRAM} -DCMAKE_BUILD_TYPE=${CONFIG}
        -DCMAKE_CXX_COMPILER=${CXX} -DCMAKE_CXX_FLAGS=${FLAGS}
        -DCMAKE_RUNTIME_OUTPUT_DIRECTORY=${source}/bin$<1:>
        # What is found must be what the way says.
        -DCMAKE_FIND_USE_CMAKE_SYSTEM_PATH=OFF -DCMAKE_FIND_USE_SYSTEM_ENVIRONMENT_PATH=OFF
        -DCMAKE_FIND_USE_CMAKE_ENVIRONMENT_PATH=OFF -DCMAKE_FIND_USE_PACKAGE_REGISTRY=OFF)
    file(READ ${CMAKE_CURRENT_LIST_DIR}/CMakeLists.txt project)
    if(WAY STREQUAL "Package")
        list(APPEND configure "-DCMAKE_PREFIX_PATH=${prefix}")
        string(REPLACE "WordSifter 1.0 " "WordSifter 2.0 " later_project "${project}")
        file(WRITE ${source}/CMakeLists.txt "${later_project}")
        must_fail("requested version \"2.0\"" ${configure})
    else()
        list(APPEND configure -DWORD_SIFTER_SOURCE=${root})
    endif()
    file(WRITE ${source}/CMakeLists.txt "${project}")
    must_run(${configure})
    set(build ${CMAKE_COMMAND} --build ${source}/build ${config_option} PARENT_SCOPE)
endfunction()

function(prepare_compiler_call)
    file(GLOB_RECURSE description ${prefix}/*.pc)
    get_filename_component(folder ${description} DIRECTORY)
    unset(ENV{PKG_CONFIG_PATH})
    set(ENV{PKG_CONFIG_LIBDIR} ${folder})
    must_run(${PKG_CONFIG} --modversion word-sifter-pattern)
    if(NOT text STREQUAL "${VERSION}\n")
        message(FATAL_ERROR "The .pc file has version ${text} instead of ${VERSION}")
    endif()
    must_run(${PKG_CONFIG} --cflags --libs word-sifter-pattern)
    separate_arguments(options UNIX_COMMAND "${FLAGS} ${text}")
    set(build ${CXX} ${source}/main.cpp ${options} -o ${program} PARENT_SCOPE)
endfunction()

# Of Word Sifter, the engine alone may be built, and nothing that it doesn't need may be looked for.
function(check_what_was_built)
    file(GLOB_RECURSE objects ${source}/build/word-sifter/*.o ${source}/build/word-sifter/*.obj)
    set(others ${objects})
    list(FILTER objects INCLUDE REGEX "/word_sifter_pattern\\.dir/")
    list(FILTER others EXCLUDE REGEX "/word_sifter_pattern\\.dir/")
    file(READ ${source}/build/CMakeCache.txt cache)
    string(REGEX MATCHALL "(GTest|CLI11|nlohmann_json|PKG_CONFIG)_[A-Z]+" packages "${cache}")
    if(NOT objects OR others OR packages)
        message(FATAL_ERROR "Not the engine alone: ${others} ${packages}")
    endif()
endfunction()

function(check_program)
    file(WRITE ${source}/main.cpp "${main}")
    must_run(${build})
    must_run(${program})
    if(NOT text STREQUAL expected_output)
        message(FATAL_ERROR "The program printed\n${text}instead of\n${expected_output}")
    endif()
endfunction()

# Users must not reach headers by paths that only Word Sifter itself may use.
function(check_include_path)
    file(WRITE ${source}/main.cpp "#include \"Pattern/pattern.h\"\nint main() {}\n")
    must_run(${build})
    foreach(header IN ITEMS actor/actor_info.h tests/pattern/engine_support.h
        Common/Pattern/pattern.h pattern.h)
        file(WRITE ${source}/main.cpp "#include \"${header}\"\nint main() {}\n")
        must_fail(${header} ${build})
    endforeach()
endfunction()

function(check_page)
    file(READ ${root}/docs/engine.md page)
    foreach(block IN ITEMS "```cpp\n${main}```\n" "```\n${expected_output}```\n")
        string(FIND "${page}" "${block}" place)
        if(place EQUAL -1)
            message(FATAL_ERROR "docs/engine.md must contain\n${block}")
        endif()
    endforeach()
endfunction()

if(WAY STREQUAL "Page")
    check_page()
    return()
endif()
file(MAKE_DIRECTORY ${scratch})
if(WAY STREQUAL "Install")
    install_engine()
    return()
endif()
file(REMOVE_RECURSE ${source})
file(MAKE_DIRECTORY ${source}/bin)
file(WRITE ${source}/main.cpp "${main}")
if(WAY STREQUAL "PkgConfig")
    prepare_compiler_call()
else()
    prepare_cmake_build()
endif()
check_program()
if(WAY STREQUAL "Subdirectory")
    check_what_was_built()
endif()
check_include_path()
