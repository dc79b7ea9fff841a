# Run by `cpack`, before anything else: without these tools it would make packages that depend on nothing.
foreach(tool file dpkg-shlibdeps)
    find_program(path_of_${tool} ${tool})
    if(NOT path_of_${tool})
        message(FATAL_ERROR "The packages cannot be made without ${tool}, which finds out what they depend on. Install the Debian "
            "packages file and dpkg-dev.")
    endif()
endforeach()
