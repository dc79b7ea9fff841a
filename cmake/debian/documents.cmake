# Run by cpack before it makes the packages: each gets the files that Debian expects below share/doc, and manual pages are
# compressed, without their time, so that the same build makes the same package.
foreach(group Runtime Development Tools Qml)
    set(place ${CPACK_TEMPORARY_DIRECTORY}/${group}${CPACK_PACKAGING_INSTALL_PREFIX})
    if(NOT EXISTS ${place})
        continue()
    endif()
    string(TOUPPER ${group} name)
    set(folder ${place}/share/doc/${CPACK_DEBIAN_${name}_PACKAGE_NAME})
    file(COPY ${CMAKE_CURRENT_LIST_DIR}/copyright ${CMAKE_CURRENT_LIST_DIR}/changelog DESTINATION ${folder})
    file(GLOB pages ${place}/share/man/man1/*.1)
    execute_process(COMMAND gzip -9nf ${folder}/changelog ${pages} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
