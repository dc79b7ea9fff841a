#!/bin/bash
# The program that the README begins with, written, built and run as it says.
. "$(dirname "$0")/common.sh"

folder=$(new_folder first-program)
home=$(new_folder first-program-home)
mkdir "$home/Documents"
ln -s "$prefix" "$home/norlis"
cd "$folder"
commands=$(session README.md link)
HOME=$home bash -euxo pipefail -c "$commands"

runs_from "$home/norlis" build/first
expect_samples build/first
if timeout 20 build/first "$folder/missing" 2>errors.txt || [ "$(grep -c "" errors.txt)" != 1 ] || ! grep -q "$folder/missing" errors.txt; then
    fail "The first program does not say that a folder is missing:" "$(cat errors.txt)"
fi
