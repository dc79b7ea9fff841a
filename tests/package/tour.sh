#!/bin/bash
# What an editor does with documents, from sign-in to removal, in C++ and in QML, over the installed copy.
. "$(dirname "$0")/common.sh"

folder=$(new_folder tour)
cp "$tree"/tests/package/tour/* "$tree/examples/quick/main.cpp" "$folder"
cp "$tree/samples/garden-year.pdf" "$folder/sample.pdf"
cd "$folder"
cmake -B build -G Ninja -DCMAKE_PREFIX_PATH="$prefix"
cmake --build build

mkdir home cloud
qt=$(PKG_CONFIG_PATH=$prefix/$libraries/pkgconfig pkg-config --variable=qt norlis-cloud)
export HOME=$folder/home QT_QUICK_BACKEND=software QML2_IMPORT_PATH=$prefix/$libraries/qt$qt/qml
build/tour cloud work "$tree"/samples/{ferry-ticket,garden-year,scanned-letter}.pdf
build/quick tour.qml cloud
[ -z "$(ls cloud)" ] || fail "The tours have left something in the cloud:" "$(ls cloud)"
