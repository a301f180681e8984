#!/usr/bin/env bash
# tool_documents.sh TOOL: holds the tool's man page and its completion in bash to its --help, and the page to mdoc.
set -euo pipefail
tool=$1
source=$(cd "$(dirname "$0")/.." && pwd)
page=$source/docs/tessel.1

# That mandoc does not know the other pages of the machine is no fault of ours.
problems=$(mandoc -T lint -W style "$page" 2>&1 | grep -v "outdated mandoc.db" || true)
[[ -z $problems ]] || { echo "$problems"; exit 1; }
shown=$(mandoc -T ascii "$page" | sed $'s/.\b//g')

complete_words() {  # WORD...: the completions of the last word of a command line
  COMP_WORDS=(tessel "$@") COMP_CWORD=$# COMPREPLY=()
  _tessel
  echo "${COMPREPLY[*]}"
}
source "$source/tools/completion.bash"

# A line of the usage is `tessel WORD`, with an option and files or without. Options are named there or below.
usage=$("$tool" --help)
read -ra words <<<"$(grep -oE 'tessel [a-z-]+' <<<"$usage" | cut -d' ' -f2 | uniq | xargs)"
options=$(grep -oE -- '(^| )-(-[a-z]*|[a-z])' <<<"$usage" | sort -u)
[[ ${#words[@]} -ge 4 && $(wc -l <<<"$options") -ge 5 ]]
completed=$(complete_words "")
[[ $completed == "${words[*]}" ]] || { echo "completed: $completed, but there is ${words[*]}"; exit 1; }
completed=" $(complete_words -) $(complete_words show -) "
for option in $options; do
  [[ $completed == *" $option "* ]] || { echo "no completion knows $option"; exit 1; }
done
for word in "${words[@]}" $options; do
  grep -qE -e "(^| )\[?$word([] ,.]|$)" <<<"$shown" || { echo "the man page does not know $word"; exit 1; }
done

[[ $(complete_words show --j) == --json && $(complete_words tree -) != *--json* && -z $(complete_words --help "") ]]
cd "$source/samples"
[[ $(complete_words tree certificate.p) == certificate.pem ]]
[[ $(complete_words show --json ./root.p) == ./root.pem && $(complete_words show -- -) != *--json* ]]
