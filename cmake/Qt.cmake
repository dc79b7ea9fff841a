# Which Qt everything is built with. Its targets are Qt${NORLIS_QT}::Core and so on.
if(NORLIS_QT STREQUAL 5)
    set(NORLIS_QT_OLDEST 5.15.2)
    set(NORLIS_QT_GROUPS run)
elseif(NORLIS_QT STREQUAL 6)
    set(NORLIS_QT_OLDEST 6.4)
    set(NORLIS_QT_GROUPS "run qt6")
else()
    message(FATAL_ERROR "NORLIS_QT is \"${NORLIS_QT}\". The project is built with Qt 5 or Qt 6: -DNORLIS_QT=5 or -DNORLIS_QT=6.")
endif()

set(components Core Gui Pdf Network Widgets LinguistTools)
if(NORLIS_BUILD_TESTS)
    list(APPEND components Test)
endif()
find_package(Qt${NORLIS_QT} ${NORLIS_QT_OLDEST} QUIET COMPONENTS ${components})
if(NOT Qt${NORLIS_QT}_FOUND)
    list(JOIN components ", " components)
    message(FATAL_ERROR "Qt ${NORLIS_QT}, from ${NORLIS_QT_OLDEST}, is not installed with all of ${components}. "
        "On Debian, this command installs it: tools/install-packages ${NORLIS_QT_GROUPS}\n${Qt${NORLIS_QT}_NOT_FOUND_MESSAGE}")
endif()

if(NORLIS_QML)
    find_package(Qt${NORLIS_QT}Quick ${NORLIS_QT_OLDEST} QUIET) # of which only the example and the tests need more than Qml
    if(NOT Qt${NORLIS_QT}Quick_FOUND)
        message(STATUS "The QML module is left out: Qt's Qml and Quick are not installed (Debian's qtdeclarative5-dev or qt6-declarative-dev)")
        set(NORLIS_QML OFF)
    endif()
endif()
