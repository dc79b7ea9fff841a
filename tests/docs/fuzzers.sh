#!/bin/bash
# fuzzers.sh PROJECT WORK: the fuzzers are built and run as their page and that for developers say, for a moment.
. "$(dirname "$0")/../package/common.sh"

cd "$sources"
use_ccache
run_session fuzz/README.md all 's/-runs=10000000/-runs=1000/'
run_session docs/working-on-the-code.md fuzz 's/-max_total_time=60/-runs=1000/'
