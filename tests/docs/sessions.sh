#!/bin/bash
# sessions.sh PROJECT BUILD: what the README shows of the terminal program works as it stands there, with a home, a release
# build and a document that are stand-ins.
set -euo pipefail
shopt -s inherit_errexit

session() {
    "$project/tests/docs/session.py" "$project" "$@"
}

project=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir -p "$folder/home" "$folder/norlis-cloud/build"
cd "$folder/norlis-cloud"
ln -s "$2" build/release
cp "$project/samples/garden-year.pdf" report.pdf

commands=$(session README.md terminal)
env -u XDG_DATA_HOME -u XDG_CONFIG_HOME HOME="$folder/home" QT_QPA_PLATFORM=offscreen bash -euxo pipefail -c "$commands"
cmp "$folder/home/Documents/report.pdf" report.pdf
