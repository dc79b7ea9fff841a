#!/bin/bash
# developer.sh PROJECT WORK BUILD: what the pages tell a developer to type, in the copy of the sources that the package was built
# from. The programs and tests of BUILD stand in for those of the preset dev, which is not built, and of tests that are running
# already only the names are listed.
dev=$3
set -- "$1" "$2"
. "$(dirname "$0")/../package/common.sh"

cd "$sources"
rm -rf build/dev
mkdir build/dev
ln -s "$dev"/{CTestTestfile.cmake,apps,host,protocol,tests} build/dev

here='/^cmake --/d' # nothing is built again
run_session docs/working-on-the-code.md build "$here" 's/^ctest.*/& -N/' # all of them are running already
run_session docs/working-on-the-code.md some 's/^\.\/test /ctest --preset dev -N -R /' 's/ -L .*/& -N/'
run_session docs/working-on-the-code.md random 's/max_success=20000/max_success=20/'
run_session docs/testkit.md tests 's/^\.\/test /ctest --preset dev -N -R /'
run_session docs/abuse.md long "$here" 's/KILLS=70/KILLS=1/' 's/Soak 3600/Soak 5/'
run_session docs/working-on-the-code.md doxygen

# The texts for translation are those of the sources.
cd apps/window
run_session docs/working-on-the-code.md texts
diff -r "$tree/apps/window/translations" translations

# A server answers until it is interrupted. It runs as nobody where these tests run as root, and cannot see into root's folders.
served=$(mktemp -d)
trap 'rm -r "$served"' EXIT
chmod 755 "$served"
cd "$served"
mkdir -p build documents
ln -s "$dev" build/dev
run_session docs/servers.md serve 's|~/documents|documents|' 's|^build.*|timeout --preserve-status --signal=INT 5 &|' | tee shown
[ "$(grep -c '^http' shown)" = 2 ] || fail "The servers said:" "$(cat shown)"
