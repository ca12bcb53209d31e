# Fails unless GetActorInfo is the only symbol that the module exports.
# Call: cmake -DNM=nm -DMODULE=path -P check_exports.cmake
execute_process(COMMAND ${NM} -D --defined-only ${MODULE}
    OUTPUT_VARIABLE table RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "${NM} can't read ${MODULE}")
endif()
string(REGEX REPLACE "[0-9a-f]+ " "" symbols "${table}")
string(STRIP "${symbols}" symbols)
if(NOT symbols STREQUAL "T GetActorInfo")
    message(FATAL_ERROR "the module exports:\n${symbols}")
endif()
