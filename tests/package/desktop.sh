#!/bin/bash
# What desktops read of the window is valid, leads to what is installed, and is of this version.
. "$(dirname "$0")/common.sh"

entry=$prefix/share/applications/org.norlis.Documents.desktop
data=$prefix/share/metainfo/org.norlis.Documents.metainfo.xml
said=$(desktop-file-validate "$entry")
[ -z "$said" ] || fail "$said"
appstreamcli validate --no-net "$data"
grep -qF "<release version=\"$version\"" "$data" || fail "$data does not tell of version $version"
[ -x "$prefix/bin/$(sed -n 's/^Exec=//p' "$entry")" ] || fail "$entry starts what is not there"
[ -f "$prefix/share/icons/hicolor/scalable/apps/$(sed -n 's/^Icon=//p' "$entry").svg" ] || fail "$entry shows what is not there"
