#!/bin/bash
# Builds the project as the README tells to, in a folder that has nothing but the sources, and moves the installed copy
# away from where it was installed.
. "$(dirname "$0")/common.sh"

# What was built before stays, and so do the times of the files: only what has changed is built again.
mkdir -p "$sources"
find "$sources" -mindepth 1 -maxdepth 1 ! -name build -exec rm -r {} +
tar -C "$tree" --exclude=./build --exclude=./.git -c . | tar -C "$sources" -x
cd "$sources"

# With what the description of the binary interface is read from, but not where that lies.
export CXXFLAGS="-g -femit-class-debug-always -ffile-prefix-map=$build=. -ffile-prefix-map=$sources=."
use_ccache
commands=$(session README.md build)
home=$(new_folder home)
HOME=$home bash -euxo pipefail -c "$commands"

rm -rf "$prefix"
mv "$home/norlis" "$prefix"
