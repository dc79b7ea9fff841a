# How targets are built, where that is asked for; nothing of it reaches what is shipped.

if(NORLIS_PRECOMPILE_HEADERS)
    file(WRITE ${PROJECT_BINARY_DIR}/precompiled.cpp "")
    add_library(NorlisPrecompiled OBJECT ${PROJECT_BINARY_DIR}/precompiled.cpp)
    target_link_libraries(NorlisPrecompiled PRIVATE Qt${NORLIS_QT}::Core Qt${NORLIS_QT}::Gui)
    target_precompile_headers(NorlisPrecompiled PRIVATE
        <QtCore/QtCore> <QtGui/QImage> <algorithm> <deque> <functional> <map> <memory> <mutex> <optional> <set> <string> <variant>
        <vector>)
    set_target_properties(NorlisPrecompiled PROPERTIES POSITION_INDEPENDENT_CODE ON AUTOMOC OFF)
endif()

# norlis_precompile(<target>...): with the headers that most files include. A file still includes what it uses: others compile it without.
function(norlis_precompile)
    if(NORLIS_PRECOMPILE_HEADERS)
        foreach(target ${ARGN})
            target_precompile_headers(${target} REUSE_FROM NorlisPrecompiled)
        endforeach()
    endif()
endfunction()

# norlis_count_coverage(<target> [<source>...]): the lines that run are counted; of the sources alone, if there are any.
function(norlis_count_coverage target)
    if(NORLIS_COVERAGE)
        if(ARGN)
            set_source_files_properties(${ARGN} PROPERTIES COMPILE_OPTIONS --coverage)
        else()
            target_compile_options(${target} PRIVATE --coverage)
        endif()
        target_link_options(${target} PUBLIC --coverage)
    endif()
endfunction()
