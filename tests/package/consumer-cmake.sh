#!/bin/bash
# A program of somebody else's, built with CMake against nothing but the installed copy.
. "$(dirname "$0")/common.sh"

folder=$(new_folder consumer-cmake)
cp "$tree"/tests/package/consumer/* "$folder"
cd "$folder"
cmake -B build -G Ninja -DCMAKE_PREFIX_PATH="$prefix"
cmake --build build
grep -qxF "NorlisCloud_DIR:PATH=$prefix/$libraries/cmake/NorlisCloud" build/CMakeCache.txt || fail "Another copy was found."
runs_from "$(realpath "$prefix")" build/consumer
expect_samples build/consumer
