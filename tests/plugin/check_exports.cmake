# Fails unless the module exports GetActorInfo and nothing else.
# Call: cmake -DOBJDUMP=objdump -DMODULE=path -P check_exports.cmake
execute_process(COMMAND ${OBJDUMP} -p -T ${MODULE}
    OUTPUT_VARIABLE tables ERROR_QUIET)  # a DLL has no table of dynamic symbols
if(tables MATCHES "\\[Ordinal/Name Pointer\\] Table\n(\t[^\n]*\n)*")
    string(REGEX MATCHALL "\n\t[^\n]+" names "${CMAKE_MATCH_0}")
else()
    string(REGEX MATCHALL "[0-9a-f]+ g [^\n]+" names "${tables}")
endif()
if(NOT names MATCHES "^[^;]+ GetActorInfo$")
    message(FATAL_ERROR "the module exports:\n${names}")
endif()
