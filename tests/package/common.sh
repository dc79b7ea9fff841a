# What the tests of the package share. Each is called with the project's folder, the folder that they all work in, and
# the copy to look at, if that is not the installed one.
set -euo pipefail
shopt -s inherit_errexit

tree=$1
work=$2
sources=$work/norlis-cloud
build=$sources/build/release
prefix=${3:-$work/prefix}
libraries=lib/$(gcc -print-multiarch)
version=$(sed -n 's/^project(.* VERSION \([0-9.]*\).*/\1/p' "$tree/CMakeLists.txt")
export LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen

fail() {
    printf '%s\n' "$@" >&2
    exit 1
}

# A new empty folder of this test's own.
new_folder() {
    rm -rf "${work:?}/$1"
    mkdir -p "$work/$1"
    echo "$work/$1"
}

# session PAGE NAME: what a reader of a page does, as a script.
session() {
    "$tree/tests/docs/session.py" "$tree" "$@"
}

# run_session PAGE NAME [CHANGE...]: what a reader of a page does, but for changes, each in sed's words. They make small what
# takes long, and each has to find its line.
run_session() {
    local commands changed change
    commands=$(session "$1" "$2")
    for change in "${@:3}"; do
        changed=$(sed "$change" <<<"$commands")
        [ "$changed" != "$commands" ] || fail "$1, $2: nothing there is what \"$change\" looks for"
        commands=$changed
    done
    bash -euxo pipefail -c "$commands"
}

# Whoever has ccache builds the same another time in less.
use_ccache() {
    if command -v ccache >/dev/null; then
        CCACHE_DIR=$(ccache -k cache_dir)
        export CCACHE_DIR CMAKE_CXX_COMPILER_LAUNCHER=ccache
    fi
}

# expect_samples PROGRAM...: it lists the documents of a folder that holds the samples.
expect_samples() {
    local folder listed expected
    folder=$(mktemp -d -p "$work")
    cp "$tree"/samples/*.pdf "$folder"
    listed=$("$@" "$folder" | LC_ALL=C sort)
    rm -r "$folder"
    expected=$(cd "$tree/samples" && printf '%s\n' *.pdf | LC_ALL=C sort)
    [ "$listed" = "$expected" ] || fail "Listed were:" "$listed" "The folder held:" "$expected"
}

# runs_from FOLDER PROGRAM: all of the project's libraries that a program loads lie there.
runs_from() {
    local libraries
    libraries=$(ldd "$2" | grep libNorlis) || fail "$2 loads none of the libraries"
    ! grep -vF "=> $1/" <<<"$libraries" || fail "$2 loads libraries from elsewhere than $1"
}
