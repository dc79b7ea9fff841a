#!/bin/bash
# Tests of somebody else's host application: the kit's examples, built against nothing but the installed copy.
. "$(dirname "$0")/common.sh"

folder=$(new_folder consumer-testkit)
cp "$tree/tests/package/consumer-testkit/CMakeLists.txt" "$tree"/testkit/examples/*.cpp "$folder"
cd "$folder"
cmake -B build -G Ninja -DCMAKE_PREFIX_PATH="$prefix"
cmake --build build
for test in UploadViewTest StartPageTest SignInTest; do
    runs_from "$(realpath "$prefix")" build/$test
    build/$test
done
