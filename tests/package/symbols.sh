#!/bin/bash
# The libraries carry their major version in their name, and show nothing but classes of the installed headers.
. "$(dirname "$0")/common.sh"

for library in NorlisContracts NorlisSocial NorlisCloud NorlisHost; do
    file=$prefix/$libraries/lib$library.so
    [ "$(readlink -f "$file")" = "$(realpath "$prefix")/$libraries/lib$library.so.$version" ] ||
        fail "$file is not version $version"
    readelf -d "$file" | grep -qF "Library soname: [lib$library.so.${version%%.*}]" || fail "$file has the wrong SONAME"

    # "vtable for Norlis::PDF::FileInfo", "Norlis::operator==(...)": down to the names that the headers have to declare.
    nm -DC --defined-only "$file" | sed -E -e 's/^[0-9a-f]+ . //' -e 's/^[a-zA-Z -]+ (for|to) (Norlis)/\2/' |
        sed -E -e 's/[<(].*//' -e 's/\[abi:[a-z0-9]+\]//' | sort -u >"$work/symbols.txt"
    if grep -v '^Norlis::' "$work/symbols.txt"; then
        fail "lib$library.so shows these, which are not ours."
    fi
    sed -E 's/::(~?[A-Za-z_0-9]+|operator.*)$//; s/.*:://' "$work/symbols.txt" | sort -u | while read -r class; do
        grep -rqE "(class|struct|namespace) ([A-Z_]+ )?([A-Za-z:]+::)?$class\b" "$prefix/include" ||
            fail "lib$library.so shows members of $class, which no installed header declares."
    done
done
