# What `cmake --install` puts where, by component:
#   Runtime      the four libraries, and the program that renders previews
#   Development  their headers, the examples, and what CMake and pkg-config need to find them
#   Tools        the programs for a user, and the entry of the window for desktops
#   Qml          the QML module Norlis.Cloud, where it is built
#   TestKit      the static library that tests of a host application link, with its headers, and the contract tests as sources
# Nothing installed knows where it was built or where it lies: the whole can be moved.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(headers ${CMAKE_INSTALL_INCLUDEDIR}/norlis-cloud)
set(cmakeFiles ${CMAKE_INSTALL_LIBDIR}/cmake/NorlisCloud)

set_target_properties(NorlisContracts PROPERTIES EXPORT_NAME Contracts)
set_target_properties(NorlisSocial PROPERTIES EXPORT_NAME Social)
set(libraries NorlisContracts NorlisSocial NorlisCloud)
if(TARGET NorlisHost)
    list(APPEND libraries NorlisHost)
    set_target_properties(NorlisHost PROPERTIES EXPORT_NAME Host)
endif()

install(TARGETS ${libraries} EXPORT NorlisCloudTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT Runtime NAMELINK_COMPONENT Development
    FILE_SET HEADERS DESTINATION ${headers} COMPONENT Development
    FILE_SET generated DESTINATION ${headers} COMPONENT Development
)
# Beside libNorlisSocial, which looks for it there.
install(TARGETS norlis-preview-renderer DESTINATION ${CMAKE_INSTALL_LIBDIR}/norlis-cloud COMPONENT Runtime)

file(RELATIVE_PATH fromProgramsToLibraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
foreach(program norlis-cloud norlis-documents)
    if(TARGET ${program})
        set_target_properties(${program} PROPERTIES INSTALL_RPATH $ORIGIN/${fromProgramsToLibraries})
        install(TARGETS ${program} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT Tools)
    endif()
endforeach()

if(TARGET norlis-documents)
    set(desktop apps/window/desktop/org.norlis.Documents)
    install(FILES ${desktop}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT Tools)
    install(FILES ${desktop}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT Tools)
    install(FILES ${desktop}.svg DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps COMPONENT Tools)
endif()

if(TARGET NorlisHost)
    set(examples ${CMAKE_INSTALL_DATADIR}/norlis-cloud/examples)
    install(FILES examples/minimal.cpp examples/window.cpp DESTINATION ${examples} COMPONENT Development)
    install(DIRECTORY examples/quick DESTINATION ${examples} COMPONENT Development)
endif()

if(TARGET describe)
    set(described ${PROJECT_BINARY_DIR}/apps/described)
    install(FILES ${described}/norlis-cloud.1 ${described}/norlis-documents.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT Tools)
    foreach(place bash-completion/completions/norlis-cloud zsh/vendor-completions/_norlis-cloud fish/vendor_completions.d/norlis-cloud.fish)
        string(REGEX MATCH "^[a-z]+" shell ${place})
        get_filename_component(folder ${place} DIRECTORY)
        get_filename_component(name ${place} NAME)
        install(FILES ${described}/norlis-cloud.${shell} DESTINATION ${CMAKE_INSTALL_DATADIR}/${folder} RENAME ${name} COMPONENT Tools)
    endforeach()
endif()

if(TARGET NorlisCloudQml)
    set(qmlModule ${CMAKE_INSTALL_LIBDIR}/qt${NORLIS_QT}/qml/Norlis/Cloud)
    set_target_properties(NorlisCloudQml PROPERTIES INSTALL_RPATH $ORIGIN/../../../..)
    install(TARGETS NorlisCloudQml LIBRARY DESTINATION ${qmlModule} COMPONENT Qml)
    install(FILES qml/qmldir qml/plugins.qmltypes DESTINATION ${qmlModule} COMPONENT Qml)
endif()

write_basic_package_version_file(${PROJECT_BINARY_DIR}/NorlisCloudConfigVersion.cmake COMPATIBILITY SameMajorVersion)
set(hasHost FALSE)
if(TARGET NorlisHost)
    set(hasHost TRUE)
endif()
math(EXPR otherQt "11 - ${NORLIS_QT}") # of 5 and 6
configure_file(cmake/NorlisCloudConfig.cmake.in ${PROJECT_BINARY_DIR}/NorlisCloudConfig.cmake @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/NorlisCloudConfig.cmake ${PROJECT_BINARY_DIR}/NorlisCloudConfigVersion.cmake
    DESTINATION ${cmakeFiles} COMPONENT Development)
install(EXPORT NorlisCloudTargets NAMESPACE NorlisCloud:: DESTINATION ${cmakeFiles} COMPONENT Development)

# norlis_install_pkg_config(<name> <library> <description> <requires> <private requires>)
file(RELATIVE_PATH fromPkgConfigToPrefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
function(norlis_install_pkg_config name library description requires privateRequires)
    configure_file(cmake/library.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT Development)
endfunction()
norlis_install_pkg_config(norlis-contracts NorlisContracts
    "Records, interfaces and signals that an editor and its cloud library agree on" "Qt${NORLIS_QT}Core Qt${NORLIS_QT}Gui" "")
norlis_install_pkg_config(norlis-social NorlisSocial
    "The cloud service's protocol object, over folders and WebDAV servers" norlis-contracts "")
norlis_install_pkg_config(norlis-cloud NorlisCloud
    "Cloud documents for a desktop PDF editor" norlis-contracts norlis-social)
if(TARGET NorlisHost)
    norlis_install_pkg_config(norlis-host NorlisHost
        "Cloud documents for a desktop PDF editor, with a record store, hashing, settings and a model for views" "norlis-cloud norlis-social"
        "")
endif()

if(TARGET NorlisTestKit)
    set_target_properties(NorlisTestKit PROPERTIES EXPORT_NAME TestKit)
    set_target_properties(NorlisContractTests PROPERTIES EXPORT_NAME ContractTests)
    install(DIRECTORY testkit/contract/ DESTINATION ${CMAKE_INSTALL_DATADIR}/norlis-cloud/contract-tests COMPONENT TestKit
        FILES_MATCHING PATTERN *.h PATTERN *.cpp)
    install(TARGETS NorlisTestKit NorlisContractTests EXPORT NorlisCloudTestKitTargets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT TestKit
        FILE_SET HEADERS DESTINATION ${headers} COMPONENT TestKit
    )
    install(EXPORT NorlisCloudTestKitTargets NAMESPACE NorlisCloud:: DESTINATION ${cmakeFiles} COMPONENT TestKit)
endif()
