#!/bin/bash
# The installed manual pages can be read, and zsh and fish complete commands, options and names of documents.
. "$(dirname "$0")/common.sh"

folder=$(new_folder shells)
export HOME=$folder PATH=$prefix/bin:$PATH
unset XDG_DATA_HOME XDG_CONFIG_HOME
cd "$folder"
mkdir cloud
cp "$tree/samples/garden-year.pdf" "cloud/garden year.pdf"
norlis-cloud login --service "$folder/cloud"
norlis-cloud list

for page in norlis-cloud norlis-documents; do
    mandoc -T lint -W warning "$prefix/share/man/man1/$page.1"
    MANPATH=$prefix/share/man man "$page" | col -b >"$page.txt"
done
for command in $(norlis-cloud --help | sed -n '/^Commands:/,/^$/s/^  \([a-z]*\) .*/\1/p'); do
    for option in $(norlis-cloud "$command" --help | sed -n 's/^  \(--[a-z-]*\).*/\1/p'); do
        grep -qF -- "$option" norlis-cloud.txt || fail "The manual does not tell of $option"
    done
    grep -q "^   $command" norlis-cloud.txt || fail "The manual does not tell of $command"
done

# expect WORDS OFFERED: fish offers that in the place of the last word.
expect_in_fish() {
    fish -c "set fish_complete_path $prefix/share/fish/vendor_completions.d; complete -C '$1'" | grep -qF -- "$2" ||
        fail "fish does not offer $2 after $1"
}
expect_in_fish 'norlis-cloud up' upload
expect_in_fish 'norlis-cloud list --off' --offline
expect_in_fish 'norlis-cloud upload --on-conflict ' theirs
expect_in_fish 'norlis-cloud download gar' 'garden year.pdf'

cat >zsh-completes <<'EOF'
zmodload zsh/zpty
zpty shell "TERM=dumb zsh -f -i" # which paints nothing
zpty -w shell "fpath=($1 \$fpath); autoload -Uz compinit; compinit -D -u; PS1='> '; stty -echo"
zpty -w -n shell "norlis-cloud $2"$'\t'
text=
repeat 100; do
    sleep 0.1
    while zpty -r -t shell piece; do text+=$piece; done
    [[ $text == *$3* ]] && exit 0
done
print -r -- "$text"
exit 1
EOF
# expect WORDS OFFERED: zsh completes the last word to that.
expect_in_zsh() {
    zsh -f zsh-completes "$prefix/share/zsh/vendor-completions" "$1" "$2" || fail "zsh does not complete $1 to $2"
}
expect_in_zsh 'upl' 'norlis-cloud upload'
expect_in_zsh 'list --off' '--offline'
expect_in_zsh 'download gar' 'garden\ year.pdf'
