#!/bin/bash
# A project that takes the sources in gets the same target names, and nothing of theirs among what it installs.
. "$(dirname "$0")/common.sh"

folder=$(new_folder add-subdirectory)
cat >"$folder/CMakeLists.txt" <<EOF
cmake_minimum_required(VERSION 3.24)
project(editor CXX)
add_subdirectory($tree norlis-cloud)
foreach(target NorlisCloud Contracts Social Host TestKit)
    if(NOT TARGET NorlisCloud::\${target})
        message(FATAL_ERROR "There is no target NorlisCloud::\${target}")
    endif()
endforeach()
EOF
cmake -S "$folder" -B "$folder/build" -G Ninja
cmake --install "$folder/build" --prefix "$folder/prefix"
installed=
if [ -e "$folder/prefix" ]; then # what installs nothing need not make it
    installed=$(find "$folder/prefix" -type f)
fi
[ -z "$installed" ] || fail "These would be installed with the other project:" "$installed"
