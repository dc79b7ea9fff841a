#!/bin/bash
# On a new Debian that has nothing but the packages, they serve users and developers, and nothing is left when they are
# removed.
. "$(dirname "$0")/common.sh"

[ "$(id -u)" -eq 0 ] || exit 77 # only root can create a machine
folder=$(new_folder fresh-machine)
packages=$(new_folder fresh-packages)
(cd "$packages" && cpack --config "$build/CPackConfig.cmake" >/dev/null)
"$tree/tools/fresh-machine" --packages "$packages" "$folder/machine"
rm -rf "${folder:?}"
