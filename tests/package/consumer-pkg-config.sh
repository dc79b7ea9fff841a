#!/bin/bash
# The same program, built with the compiler and pkg-config alone.
. "$(dirname "$0")/common.sh"

folder=$(new_folder consumer-pkg-config)
cp "$tree/tests/package/consumer/main.cpp" "$folder"
cd "$folder"
lib="$prefix/lib/$(gcc -print-multiarch)"
export PKG_CONFIG_PATH="$lib/pkgconfig"
export LD_LIBRARY_PATH="$lib"
g++ -fPIC main.cpp -o consumer $(pkg-config --cflags --libs norlis-cloud)
runs_from "$prefix" ./consumer
expect_samples ./consumer
for library in norlis-contracts norlis-social norlis-host; do
    pkg-config --exists --print-errors $library
done
