#!/bin/bash
# The window that the host's page begins with, built against the installed copy, with CMake and with pkg-config.
. "$(dirname "$0")/common.sh"

folder=$(new_folder consumer-host)
cp "$tree"/tests/package/consumer-host/* "$tree/examples/window.cpp" "$folder"
cd "$folder"
cmake -B build -G Ninja -DCMAKE_PREFIX_PATH="$prefix"
cmake --build build
PKG_CONFIG_PATH=$prefix/$libraries/pkgconfig
export PKG_CONFIG_PATH
g++ -std=c++17 -fPIC window.cpp -o window $(pkg-config --cflags --libs norlis-host "Qt$(pkg-config --variable=qt norlis-host)Widgets") -Wl,-rpath,"$prefix/$libraries"

mkdir home cloud
cp "$tree"/samples/*.pdf cloud
export HOME=$folder/home
for program in build/window ./window; do
    runs_from "$(realpath "$prefix")" $program
    if timeout 20 $program ftp://cloud.example/ 2>errors.txt || ! grep -q "ftp" errors.txt; then
        fail "$program does not say that it knows no such service:" "$(cat errors.txt)"
    fi
    status=0
    timeout 5 $program "$folder/cloud" || status=$?
    [ $status -eq 124 ] || fail "$program shows no window over a folder: $status"
done
