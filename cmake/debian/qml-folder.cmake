# Run by cpack before it makes the packages: Debian's Qt looks for modules in a folder of the architecture, whether or not
# the libraries of this build go there.
set(place ${CPACK_TEMPORARY_DIRECTORY}/Qml${CPACK_PACKAGING_INSTALL_PREFIX})
set(wanted ${place}/lib/${CPACK_NORLIS_ARCHITECTURE}/qt5)
if(NOT EXISTS ${wanted})
    file(MAKE_DIRECTORY ${place}/lib/${CPACK_NORLIS_ARCHITECTURE})
    file(RENAME ${place}/${CPACK_NORLIS_QML_MODULES} ${wanted})
endif()
