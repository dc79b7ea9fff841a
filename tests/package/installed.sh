#!/bin/bash
# What users and developers do with the packages on a machine that has nothing else: in a folder with samples, consumer and
# tour, programs are built over them, documents taken through both kinds, manual pages read and commands completed.
set -euxo pipefail
export QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software
mkdir cloud

cmake -S tour -B built -G Ninja
cmake --build built
(cd tour && ../built/tour ../cloud work ../samples/{ferry-ticket,garden-year,scanned-letter}.pdf && ../built/quick tour.qml ../cloud)

cmake -S consumer -B built-by-cmake -G Ninja
cmake --build built-by-cmake
g++ -fPIC consumer/main.cpp -o by-pkg-config $(pkg-config --cflags --libs norlis-cloud)
for program in built-by-cmake/consumer ./by-pkg-config; do
    $program samples | sort | diff <(ls samples) -
done

norlis-cloud login --service cloud
norlis-cloud upload samples/garden-year.pdf
norlis-cloud list | grep -F garden-year.pdf
norlis-documents --version
man norlis-cloud | col -b | grep -F -- --on-conflict >/dev/null
man norlis-documents | col -b | grep -F -- --data >/dev/null

# completes OFFERED WORD...: a bash of the system's own offers that in the place of the last word.
completes() {
    bash -c '. /usr/share/bash-completion/bash_completion
        _completion_loader norlis-cloud
        compopt() { :; } # there is nothing typed
        COMP_WORDS=(norlis-cloud "${@:2}") COMP_CWORD=$(($# - 1))
        _norlis_cloud
        [ "${COMPREPLY[*]}" = "$1" ]' bash "$@"
}
completes upload upl
completes garden-year.pdf download gar
