# Completion of tessel's command line, for bash.
_tessel() {
  local word=${COMP_WORDS[COMP_CWORD]} command=${COMP_WORDS[1]} words=
  COMPREPLY=()
  if ((COMP_CWORD == 1)); then
    words='show tree help --version'
    [[ $word != -* ]] || words='--help --version -h'
  elif [[ $command != show && $command != tree ]]; then
    return
  elif [[ $word == -* && " ${COMP_WORDS[*]:2:COMP_CWORD-2} " != *' -- '* ]]; then
    words='--help -h --'
    [[ $command != show ]] || words="--json $words"
  else
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
    return
  fi
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}
complete -F _tessel tessel
