#!/bin/bash
# doxygen.sh PROJECT BUILD: doxygen has nothing to complain of, so every public header says what its classes and functions
# mean.
set -euo pipefail

cd "$1"
{
    cat docs/Doxyfile
    echo "OUTPUT_DIRECTORY = $2"
} | doxygen -

# It has read them, from every folder.
for class in AbstractCloudManager NorlisCloudFilesManager CloudSession ScriptedProtocol; do
    ls "$2"/doxygen/class*"$class".html >/dev/null
done
