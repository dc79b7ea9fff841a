#!/bin/bash
# What the page on packaging tells the reader to type or to write is what the tests here do: each line of its code
# blocks stands in one of them.
. "$(dirname "$0")/common.sh"

untested=$(sed -n '/^```./,/^```$/{/^```/d;s/^ *//;/^$/d;p}' "$tree/docs/packaging.md" | while IFS= read -r line; do
    grep -rqF -- "$line" "$tree/tests/package" || echo "$line"
done)
[ -z "$untested" ] || fail "No test does what docs/packaging.md says here:" "$untested"
