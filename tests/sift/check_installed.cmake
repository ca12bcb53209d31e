# Installs the plug-in and the tools and moves them. Fails unless exactly FILES are installed, and
# sift finds the plug-in among them.
# Call: cmake -DBUILD=folder -DCONFIG=config -DEXAMPLE=path -DFILES=sift,file... -P check_installed.cmake
cmake_minimum_required(VERSION 3.20)
unset(ENV{DESTDIR})
set(config_option)
if(CONFIG)
    set(config_option --config ${CONFIG})
endif()
set(prefix "${BUILD}/installed/moved tree")
file(REMOVE_RECURSE ${BUILD}/installed)
foreach(component IN ITEMS plugin tools)
    execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} ${config_option}
        --component ${component} --prefix ${BUILD}/installed/tree
        OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
endforeach()
file(RENAME ${BUILD}/installed/tree ${prefix})

string(REPLACE "," ";" expected "${FILES}")
list(GET expected 0 sift)
file(GLOB_RECURSE found RELATIVE ${prefix} ${prefix}/*)
list(SORT expected)
list(SORT found)
if(NOT found STREQUAL expected)
    message(FATAL_ERROR "installed: ${found}\ninstead of ${expected}")
endif()

execute_process(COMMAND ${prefix}/${sift} -f ${EXAMPLE}.pattern ${EXAMPLE}.input
    OUTPUT_VARIABLE output ERROR_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
file(READ ${EXAMPLE}.output expected_output)
if(NOT output STREQUAL expected_output)
    message(FATAL_ERROR "sift printed\n${output}instead of\n${expected_output}")
endif()
