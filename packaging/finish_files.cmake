# CPack runs this over the files before it packs them. Gives a .deb what Debian expects, and, if the
# environment has SOURCE_DATE_EPOCH, all files that time, so that two builds make the same packages.
set(epoch "$ENV{SOURCE_DATE_EPOCH}")
if(epoch STREQUAL "")
    string(TIMESTAMP now "%s" UTC)
else()
    set(now ${epoch})
endif()

# run(COMMAND...): stops unless the command succeeds.
function(run)
    execute_process(COMMAND ${ARGV} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

if(CPACK_GENERATOR STREQUAL "DEB")
    set(share ${CPACK_TEMPORARY_DIRECTORY}/usr/share)
    execute_process(COMMAND date -Ru -d @${now} OUTPUT_VARIABLE date COMMAND_ERROR_IS_FATAL ANY)
    file(WRITE ${share}/doc/word-sifter/changelog
        "word-sifter (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium\n\n"
        "  * CHANGELOG.md lists the changes.\n\n"
        " -- ${CPACK_DEBIAN_PACKAGE_MAINTAINER}  ${date}")
    file(GLOB manuals ${share}/man/*/*)
    run(gzip -9nf ${share}/doc/word-sifter/changelog ${manuals})
endif()
if(NOT epoch STREQUAL "")
    run(find ${CPACK_TEMPORARY_DIRECTORY} -exec touch -hd @${epoch} {} +)
endif()
