#!/bin/bash
# Builds the project as it is shipped, installs it, and moves the installed copy away from where it was installed.
. "$(dirname "$0")/common.sh"

# With what the description of the binary interface is read from, but not where that lies.
flags="-g -femit-class-debug-always -ffile-prefix-map=$build=. -ffile-prefix-map=$tree=."
if command -v ccache >/dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER=ccache
fi
cd "$tree"
cmake --preset release -B "$build" -DCMAKE_CXX_FLAGS="$flags"
cmake --build "$build"

prefix=$(new_folder installed)
cmake --install "$build" --prefix "$prefix" --strip
rm -rf "$work/prefix"
mv "$prefix" "$work/prefix"
