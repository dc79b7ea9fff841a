#!/bin/bash
# A copy for Qt 6 serves programs that CMake and pkg-config build, and says what is wrong to a project of another Qt: qt6.sh TREE WORK BUILD.
. "$(dirname "$0")/common.sh"

built=$3
home=$(new_folder home-of-qt6)
export built
# The build of these tests stands in for the one of the page.
(cd "$tree" && HOME=$home run_session docs/packaging.md qt6 '/^tools/d' '/^cmake --preset/d' '/^cmake --build/d' 's|build/for-qt6|"$built"|')
prefix=$home/norlis-qt6
for program in consumer-{cmake,pkg-config,host,testkit} tour; do
    "$tree/tests/package/$program.sh" "$tree" "$work" "$prefix"
done
! ldd "$prefix/$libraries"/libNorlis*.so | grep libQt5 || fail "These libraries load Qt 5."

folder=$(new_folder other-qt)
printf '%s\n' "cmake_minimum_required(VERSION 3.16)" "project(other CXX)" "find_package(Qt5 REQUIRED COMPONENTS Core)" \
    "find_package(NorlisCloud REQUIRED)" >"$folder/CMakeLists.txt"
! said=$(cmake -S "$folder" -B "$folder/build" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" 2>&1) || fail "A project of Qt 5 got libraries for Qt 6."
grep -qF "Norlis Cloud was built for Qt 6, and this project uses Qt 5." <<<"$(tr -s ' \n' ' ' <<<"$said")" || fail "It is not said which Qt is wrong:" "$said"
