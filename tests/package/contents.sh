#!/bin/bash
# Each component installs what contents.txt says, no more and no less.
. "$(dirname "$0")/common.sh"

for component in Runtime Development Tools Qml TestKit; do
    folder=$(new_folder "components/$component")
    cmake --install "$build" --prefix "$folder" --component $component >/dev/null
    (cd "$folder" && find . -not -type d) | sed -e "s|^\.|$component |" -e "s|/$libraries/|/LIBRARIES/|" -e "s/\.so\.${version//./\\.}$/.so.VERSION/" \
        -e "s/\.so\.${version%%.*}$/.so.MAJOR/"
done | LC_ALL=C sort >"$work/contents.txt"
diff "$tree/tests/package/contents.txt" "$work/contents.txt" ||
    fail "The components hold something else than tests/package/contents.txt says (<)."

installed=$(new_folder installed)
cd "$sources"
build=$build prefix=$installed run_session docs/packaging.md install
diff -r --no-dereference "$installed" "$prefix" || fail "What is installed as one page tells to (<) is not what another one gets (>)."
