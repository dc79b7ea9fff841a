#!/bin/bash
# find_package says what is wrong with a component or a version that it cannot give.
. "$(dirname "$0")/common.sh"

folder=$(new_folder components-asked)
bare=$(new_folder components-bare)
for component in Runtime Development; do
    cmake --install "$build" --prefix "$bare" --component $component >/dev/null
done

# expect PREFIX "ARGUMENTS OF find_package" [MESSAGE]: it is found, or the message says why not.
expect() {
    printf '%s\n' "cmake_minimum_required(VERSION 3.16)" "project(asked CXX)" "find_package(NorlisCloud $2)" \
        >"$folder/CMakeLists.txt"
    rm -rf "$folder/build"
    local said status=0
    said=$(cmake -S "$folder" -B "$folder/build" -G Ninja -DCMAKE_PREFIX_PATH="$1" 2>&1) || status=$?
    if [ -z "${3:-}" ]; then
        [ $status -eq 0 ] || fail "find_package(NorlisCloud $2) failed:" "$said"
    else
        [ $status -ne 0 ] || fail "find_package(NorlisCloud $2) found something."
        grep -qF "$3" <<<"$(tr -s ' \n' ' ' <<<"$said")" ||
            fail "find_package(NorlisCloud $2) does not say \"$3\":" "$said"
    fi
}

expect "$prefix" "1.0 REQUIRED COMPONENTS NorlisCloud Contracts Social Host TestKit"
expect "$bare" "REQUIRED OPTIONAL_COMPONENTS TestKit Nonsense"
expect "$bare" "REQUIRED COMPONENTS TestKit" "The component TestKit of NorlisCloud is not installed"
expect "$prefix" "REQUIRED COMPONENTS Nonsense" \
    "NorlisCloud has no component Nonsense, only NorlisCloud, Contracts, Social, Host and TestKit."
expect "$prefix" "2.0 REQUIRED" 'compatible with requested version "2.0"'
