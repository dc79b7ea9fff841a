#!/bin/bash
# benchmarks.sh PROJECT WORK: the benchmarks are built and run as the page says, with little to do.
. "$(dirname "$0")/../package/common.sh"

cd "$sources"
use_ccache
run_session docs/working-on-the-code.md bench \
    's/^.*ManagerBenchmark/& --benchmark_min_time=0.001/' \
    's|^.*StorageBenchmark|& --benchmark_min_time=0.001 --benchmark_filter=documents:1000/|' \
    's/^.*PreviewBenchmark/& 5 1/' \
    's/^.*WebDavBenchmark/& 4 10 100 1/' \
    's|^.*programs.py build/release$|& --share 0.002 --rounds 1|' | tee shown
if grep "ERROR OCCURRED" shown; then
    fail "A benchmark has failed"
fi
