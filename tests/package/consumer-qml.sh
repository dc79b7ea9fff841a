#!/bin/bash
# The windows that the module's page shows, over the installed copy, in a program that links none of its libraries.
. "$(dirname "$0")/common.sh"

folder=$(new_folder consumer-qml)
cp "$tree"/tests/package/consumer-qml/* "$tree"/examples/quick/* "$folder"
cd "$folder"
mkdir home cloud
cp "$tree"/samples/*.pdf cloud
export HOME=$folder/home QT_QUICK_BACKEND=software
run_session docs/qml.md quick "s|^QML2_IMPORT_PATH=.*||"

runs_from "$(realpath "$prefix")" "$prefix/$libraries/qt5/qml/Norlis/Cloud/libNorlisCloudQml.so"
export QML2_IMPORT_PATH=$prefix/$libraries/qt5/qml
for window in list.qml documents.qml; do
    status=0
    timeout 5 build/quick $window cloud 2>errors.txt || status=$?
    [ $status -eq 124 ] || fail "$window shows no window over a folder: $status" "$(cat errors.txt)"
    [ ! -s errors.txt ] || ! grep -q "qml" errors.txt || fail "$window has mistakes:" "$(cat errors.txt)"
done
if QML2_IMPORT_PATH= timeout 5 build/quick list.qml cloud 2>errors.txt || ! grep -q '"Norlis.Cloud" is not installed' errors.txt; then
    fail "The program finds another copy of the module:" "$(cat errors.txt)"
fi

# An editor of widgets has nothing of it to ship.
! ldd "$prefix/$libraries"/libNorlis*.so | grep libQt5Qml || fail "These libraries load QML."
