# Fails unless FILE, a program or a module, was linked with what makes a fault harder to exploit.
# Call: cmake -DFILE=path -DREADELF=readelf -P check_hardening.cmake, for Windows -DOBJDUMP=objdump
if(OBJDUMP)
    execute_process(COMMAND ${OBJDUMP} -p ${FILE} OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
    set(wanted HIGH_ENTROPY_VA DYNAMIC_BASE NX_COMPAT)
    set(unwanted)
else()
    execute_process(COMMAND ${READELF} -hldW --dyn-syms ${FILE}
        OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
    set(wanted "Type: +DYN" "GNU_RELRO" "FLAGS_1[^\n]* NOW" "GNU_STACK[^\n]* RW "
        " __stack_chk_fail@" " __[a-z]*printf_chk@")
    set(unwanted "RPATH" "RUNPATH" "TEXTREL")
    if(text MATCHES "INTERP")  # a program
        list(APPEND wanted "FLAGS_1[^\n]* PIE")
    endif()
endif()
foreach(regex IN LISTS wanted)
    if(NOT text MATCHES "${regex}")
        message(FATAL_ERROR "${FILE} lacks: ${regex}")
    endif()
endforeach()
foreach(regex IN LISTS unwanted)
    if(text MATCHES "${regex}")
        message(FATAL_ERROR "${FILE} has: ${regex}")
    endif()
endforeach()
