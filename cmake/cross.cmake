# What the toolchains for other systems have in common. triple: the prefix of the cross tools.
#
# CLI11 and nlohmann/json consist of headers only, so the packages of this system serve. Links in a
# folder of their own keep the other headers of this system out of the search path.
get_property(is_try_compile GLOBAL PROPERTY IN_TRY_COMPILE)
set(header_packages ${CMAKE_BINARY_DIR}/header-packages)
if(NOT is_try_compile)
    foreach(path IN ITEMS include/CLI include/nlohmann share/cmake/CLI11 share/cmake/nlohmann_json)
        get_filename_component(folder ${header_packages}/${path} DIRECTORY)
        file(MAKE_DIRECTORY ${folder})
        file(CREATE_LINK /usr/${path} ${header_packages}/${path} SYMBOLIC)
    endforeach()
endif()
set(CMAKE_FIND_ROOT_PATH /usr/${triple} ${header_packages})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
