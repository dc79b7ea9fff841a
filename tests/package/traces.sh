#!/bin/bash
# Nothing in an installed copy knows where it was built, and its libraries find each other wherever it is put.
. "$(dirname "$0")/common.sh"

if grep -rlF -e "$tree" -e "$work" "$prefix"; then
    fail "These files name a folder of the machine that they were built on."
fi
find "$prefix" -type f \( -name '*.so' -o -name '*.so.*' -o -perm -u+x \) -print0 | while IFS= read -rd '' file; do
    places=$(readelf -d "$file" | sed -n 's/.*(R\(UN\)\?PATH).*\[\(.*\)\]/\2/p')
    case $places in
    '' | \$ORIGIN | \$ORIGIN/../*) ;;
    *) fail "$file looks for libraries in $places" ;;
    esac
done
for program in "$prefix"/bin/*; do
    runs_from "$(realpath "$prefix")" "$program"
done
