#!/bin/bash
# The installed terminal program does its work, previews too, whose renderer the library has to find.
. "$(dirname "$0")/common.sh"

folder=$(new_folder programs)
mkdir "$folder/cloud"
program=("$prefix/bin/norlis-cloud")
"${program[@]}" login --data "$folder/data" --service "$folder/cloud"
"${program[@]}" upload --data "$folder/data" "$tree/samples/ferry-ticket.pdf"
"${program[@]}" preview --data "$folder/data" ferry-ticket.pdf
[ "$(find "$folder/data" -name '*_large.png' | wc -l)" -eq 1 ] || fail "There is no picture of the document."
