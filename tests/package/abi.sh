#!/bin/bash
# The binary interface of a library is the recorded one: abi.sh TREE WORK LIBRARY. Additions are allowed, except in
# virtual tables.
. "$(dirname "$0")/common.sh"

library=$3
recorded=$tree/tests/package/abi/lib$library.abi
built=$work/lib$library.abi
abi=$tree/tests/package/abi

explain() {
    fail "" "Programs that were built against lib$library.so would break: see above, < is what they expect." \
        "If that is meant, raise the major version in CMakeLists.txt unless it was raised since the last release," \
        "run tools/update-abi, and commit what it changes."
}

"$abi/describe" "$build"/*/lib"$library".so >"$built"
diff <("$abi/virtual-tables" "$recorded" | c++filt) <("$abi/virtual-tables" "$built" | c++filt) || explain
abidiff --no-added-syms --no-unreferenced-symbols "$recorded" "$built" || explain
