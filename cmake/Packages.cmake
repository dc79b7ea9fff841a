# What `cpack` makes: Debian packages, of one group of components each.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME norlis-cloud)
set(CPACK_PACKAGE_CONTACT "The Norlis developers <developers@norlis.org>")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_SOURCE_DIR}/cmake/PackageTools.cmake)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(sameVersion "libnorlis-cloud${PROJECT_VERSION_MAJOR} (= ${PROJECT_VERSION})")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libnorlis-cloud${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
# What is used by number, such as CURLOPT_PROTOCOLS_STR, is in no table of symbols.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS "libcurl4 (>= 7.85)")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
# A program that was built against a version runs with every later one of the same SONAME.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "cloud documents for desktop PDF editors - shared libraries
Sign-in, the list of documents with preview pictures, upload and download, over
folders and WebDAV servers, as Qt classes.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libnorlis-cloud-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${sameVersion}, qtbase5-dev (>= 5.15)")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "cloud documents for desktop PDF editors - development files
Headers, what CMake and pkg-config need to find the libraries, and a kit for
the tests of an application that uses them.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME norlis-cloud-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS ${sameVersion})
set(CPACK_DEBIAN_TOOLS_DESCRIPTION "cloud documents for desktop PDF editors - programs
Send, list, fetch and remove documents in a folder or on a WebDAV server, from
a terminal or in a window.")

set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian/documents.cmake)
if(TARGET NorlisCloudQml)
    set(CPACK_DEBIAN_QML_PACKAGE_NAME qml-module-norlis-cloud)
    set(CPACK_DEBIAN_QML_PACKAGE_SECTION libs)
    set(CPACK_DEBIAN_QML_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_QML_PACKAGE_DEPENDS ${sameVersion})
    set(CPACK_DEBIAN_QML_DESCRIPTION "cloud documents for desktop PDF editors - QML module
The documents of a folder or of a WebDAV server as an element for interfaces in
Qt Quick.")
endif()

# Where the libraries of the runtime package are while those of others are made.
foreach(library NorlisContracts NorlisSocial NorlisCloud NorlisHost)
    get_target_property(folder ${library} BINARY_DIR)
    list(APPEND CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${folder})
endforeach()

include(CPack)
cpack_add_component(Runtime GROUP Runtime)
cpack_add_component(Development GROUP Development)
cpack_add_component(TestKit GROUP Development)
cpack_add_component(Tools GROUP Tools)
if(TARGET NorlisCloudQml)
    cpack_add_component(Qml GROUP Qml)
endif()
