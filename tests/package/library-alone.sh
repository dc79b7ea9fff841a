#!/bin/bash
# Without the host side and the programs, the library is built, installed and found as with them.
. "$(dirname "$0")/common.sh"

folder=$(new_folder library-alone)
cd "$sources"
use_ccache
build=$folder/build
prefix=$folder/prefix
export build prefix
run_session docs/packaging.md alone
for other in bin share "$libraries/libNorlisHost.so" "$libraries/pkgconfig/norlis-host.pc"; do
    [ ! -e "$prefix/$other" ] || fail "$other does not belong to the library."
done
"$tree/tests/package/consumer-cmake.sh" "$tree" "$folder" "$prefix"

printf '%s\n' "cmake_minimum_required(VERSION 3.16)" "project(asked CXX)" "find_package(NorlisCloud REQUIRED COMPONENTS Host)" \
    >"$folder/CMakeLists.txt"
! said=$(cmake -S "$folder" -B "$folder/asked" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" 2>&1) || fail "The host side was found."
grep -qF "The component Host of NorlisCloud is not installed" <<<"$(tr -s ' \n' ' ' <<<"$said")" || fail "It is not said what is missing:" "$said"
