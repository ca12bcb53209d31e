# Fails if the module needs a libstdc++ from the process that loads it, or a libgcc_s that isn't of
# the oldest.
# Call: cmake -DOBJDUMP=objdump -DMODULE=path -P check_runtime.cmake
execute_process(COMMAND ${OBJDUMP} -p ${MODULE} OUTPUT_VARIABLE headers RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    message(FATAL_ERROR "${OBJDUMP} can't read ${MODULE}")
endif()
string(REGEX MATCHALL "(NEEDED|DLL Name:) [^\n]*" libraries "${headers}")
if(NOT libraries)
    message(FATAL_ERROR "${OBJDUMP} lists no library that ${MODULE} needs")
endif()
string(REGEX MATCHALL "libstdc\\+\\+[^\n]*|(GLIBCXX|CXXABI)_[0-9.]+|GCC_([5-9]|1[0-9])[0-9.]*"
    needs "${headers}")
if(needs)
    message(FATAL_ERROR "the module needs: ${needs}")
endif()
