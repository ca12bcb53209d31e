# Tests the engine as other programs use it: see run.cmake. Included, because this folder is a
# project of its own.
find_program(WORD_SIFTER_PKG_CONFIG NAMES pkgconf pkg-config)
set(consumer_flags "${CMAKE_CXX_FLAGS} \
$<JOIN:$<TARGET_PROPERTY:word_sifter_flags,INTERFACE_COMPILE_OPTIONS>, >")
foreach(way IN ITEMS Install Package Subdirectory PkgConfig Page)
    add_test(NAME Consumer.${way}
        COMMAND ${CMAKE_COMMAND} -DWAY=${way} "-DBUILD=${PROJECT_BINARY_DIR}"
            -DVERSION=${PROJECT_VERSION} "-DCXX=${CMAKE_CXX_COMPILER}" "-DFLAGS=${consumer_flags}"
            "-DGENERATOR=${CMAKE_GENERATOR}" "-DMAKE_PROGRAM=${CMAKE_MAKE_PROGRAM}"
            -DCONFIG=$<CONFIG> "-DPKG_CONFIG=${WORD_SIFTER_PKG_CONFIG}"
            -P ${CMAKE_CURRENT_LIST_DIR}/run.cmake)
endforeach()
set_tests_properties(Consumer.Install PROPERTIES FIXTURES_SETUP installed_engine)
set_tests_properties(Consumer.Package Consumer.PkgConfig
    PROPERTIES FIXTURES_REQUIRED installed_engine)
if(NOT WORD_SIFTER_PKG_CONFIG)
    set_tests_properties(Consumer.PkgConfig PROPERTIES DISABLED TRUE)
endif()
