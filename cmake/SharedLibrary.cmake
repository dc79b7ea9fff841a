# norlis_shared_library(<target>): what the libraries that an editor ships have in common. Their version is the
# project's, and nothing leaves them but what their headers declare: not even what the compiler instantiates from other
# libraries' templates.
function(norlis_shared_library target)
    set(exports ${PROJECT_SOURCE_DIR}/cmake/Exports.map)
    set_target_properties(${target} PROPERTIES
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        LINK_DEPENDS ${exports}
        INSTALL_RPATH $ORIGIN
    )
    target_link_options(${target} PRIVATE LINKER:--version-script=${exports})
endfunction()
