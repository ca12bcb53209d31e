# Toolchain: builds for Linux on another processor, and runs what was built under qemu.
# WORD_SIFTER_PROCESSOR: s390x, aarch64 or another one that has a cross compiler and qemu.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES WORD_SIFTER_PROCESSOR)
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ${WORD_SIFTER_PROCESSOR})
set(triple ${WORD_SIFTER_PROCESSOR}-linux-gnu)
set(CMAKE_C_COMPILER ${triple}-gcc)
set(CMAKE_CXX_COMPILER ${triple}-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-${WORD_SIFTER_PROCESSOR} -L /usr/${triple})
include(${CMAKE_CURRENT_LIST_DIR}/cross.cmake)
