#!/bin/bash
# The Debian packages say what they need, hold what they should, and their content works where it was unpacked. Without the
# tools that find out what they need, none is made.
. "$(dirname "$0")/common.sh"

architecture=$(dpkg --print-architecture)
runtime=libnorlis-cloud${version%%.*}
folder=$(new_folder debian)
cd "$folder"
cpack=$(command -v cpack)
mkdir tools
ln -s "$(command -v file)" tools
if PATH=$folder/tools "$cpack" --config "$build/CPackConfig.cmake" -D CMAKE_FIND_USE_CMAKE_SYSTEM_PATH=OFF 2>errors; then
    fail "Packages were made without dpkg-shlibdeps."
fi
grep -q "without dpkg-shlibdeps" errors || fail "It was not said what is missing:" "$(<errors)"
cpack --config "$build/CPackConfig.cmake"

# expect PACKAGE FIELD PATTERN...: each matches the field.
expect() {
    local value pattern
    value=$(dpkg-deb -f "${1}_${version}_$architecture.deb" "$2")
    for pattern in "${@:3}"; do
        grep -qE -- "$pattern" <<<"$value" || fail "$2 of $1 has no $pattern: $value"
    done
}
same="$runtime \(= ${version//./\\.}\)"
expect "$runtime" Depends 'libqt5core5a \(>= 5\.15' libqt5gui5 libqt5pdf5 'libcurl4 \(>= 7\.85\)' libsqlite3-0 libgoogle-glog libc6 'libstdc\+\+6'
expect libnorlis-cloud-dev Depends "$same" 'qtbase5-dev \(>= 5\.15\)'
expect norlis-cloud-tools Depends "$same" libqt5core5a libgoogle-glog
expect qml-module-norlis-cloud Depends "$same" libqt5core5a libqt5qml5
for package in "$runtime" libnorlis-cloud-dev norlis-cloud-tools qml-module-norlis-cloud; do
    expect $package Maintainer '^The Norlis developers <developers@norlis.org>$'
    expect $package Description '^cloud documents for desktop PDF editors - '
    expect $package Section '^(libs|libdevel|utils)$'
    dpkg-deb -x "${package}_${version}_$architecture.deb" root
    for document in copyright changelog.gz; do
        [ -s "root/usr/share/doc/$package/$document" ] || fail "$package has no $document."
    done
done
[ -z "$(dpkg-deb -c "norlis-cloud-tools_${version}_$architecture.deb" | grep -v ' \./$\| \./usr/')" ] ||
    fail "norlis-cloud-tools has files outside of /usr."
dpkg-deb -e "${runtime}_${version}_$architecture.deb" control
grep -qx "activate-noawait ldconfig" control/triggers || fail "$runtime does not tell the system of its libraries."
for library in NorlisContracts NorlisSocial NorlisCloud NorlisHost; do
    grep -qx "lib$library ${version%%.*} $runtime (>= $version)" control/shlibs ||
        fail "$runtime does not say what needs lib$library."
done

lintian --allow-root --fail-on error,warning ./*.deb || fail "There is something wrong with the packages."
apt-get install ./*.deb --simulate >/dev/null || fail "The packages ask for what Debian does not have."

# Where Debian's Qt looks for it.
modules=$(qmake -qt=5 -query QT_INSTALL_QML)
[ -f "root$modules/Norlis/Cloud/qmldir" ] || fail "The QML module is not in $modules."
rm -r root/usr/share/{doc,lintian}
gunzip root/usr/share/man/man1/*.gz
diff -r --no-dereference root/usr "$prefix" || fail "The packages (<) are not what is installed from the build (>)."
"$tree/tests/package/consumer-cmake.sh" "$tree" "$folder" "$folder/root/usr"
"$tree/tests/package/programs.sh" "$tree" "$folder" "$folder/root/usr"
"$tree/tests/package/consumer-qml.sh" "$tree" "$folder" "$folder/root/usr"
