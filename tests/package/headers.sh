#!/bin/bash
# Each installed header can be included first and alone.
. "$(dirname "$0")/common.sh"

export PKG_CONFIG_PATH="$prefix/$libraries/pkgconfig"
read -ra flags <<<"$(pkg-config --cflags norlis-cloud Qt5Network)"
cd "$prefix/include/norlis-cloud"
find . -name '*.h' -print0 |
    xargs -0 -P 2 -I '{}' \
        g++ -std=c++17 -fPIC -Wall -Wextra -Werror "${flags[@]}" -fsyntax-only -x c++ -include '{}' /dev/null
