#!/bin/bash
# ./run, as the pages show it, takes documents through a folder and through a server and back, and opens the window.
serve=$3/tests/protocol/servers/serve
set -- "$1" "$2"
. "$(dirname "$0")/common.sh"

cd "$sources"
cp samples/garden-year.pdf my.pdf
cp samples/ferry-ticket.pdf other.pdf
NORLIS_DEMO_DIR=$(new_folder demo)
HOME=$(new_folder run-home)
export NORLIS_DEMO_DIR HOME PATH=$build/apps:$PATH
unset XDG_DATA_HOME XDG_CONFIG_HOME

# The window stays open until the pictures of all samples are there.
run_window() {
    ./run --window &
    window=$!
    trap 'kill "$window"' EXIT
    local pictures=0 tries=0
    while [ "$pictures" -lt 4 ]; do
        [ $((tries += 1)) -le 600 ] || fail "The window has made $pictures pictures in a minute"
        kill -0 "$window" || fail "The window has closed"
        sleep 0.1
        pictures=$(find "$NORLIS_DEMO_DIR" -name '*_large.png' | wc -l)
    done
    trap - EXIT
    kill "$window"
    wait "$window"
}
export -f run_window fail

# expect TEXT: it stands in what the last session has shown.
expect() {
    grep -qF "$1" shown || fail "There is no \"$1\" in what was shown"
}

# ./test is what runs this.
run_session README.md run 's|^\./run --window.*|run_window|' '/^\.\/test /d' | tee shown
expect "All 4 came back with the same MD5."
expect "All 2 came back with the same MD5."
expect "Opening the window."

coproc "$serve" rclone
server=$COPROC_PID
trap 'kill "$server"' EXIT
read -r address <&"${COPROC[0]}"
read -r password <&"${COPROC[0]}"
export address password

# Supplies the password that a reader would type.
here='s|https://anna@cloud.example/dav/|"$address" <<<"$password"|'
run_session docs/servers.md doctor "$here" | tee shown
expect '"DAV classes"'
run_session docs/servers.md run "$here" | tee shown
expect "All 4 came back with the same MD5."
run_session README.md server "$here" | tee shown
[ "$(find "$NORLIS_DEMO_DIR/pictures" -name '*.png' | wc -l)" -eq 12 ] || fail "There are no copies of all pictures"
expect "DAV classes"
expect "All 4 came back with the same MD5."
