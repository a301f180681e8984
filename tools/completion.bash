# Completion of tessel's command line, for bash.
_tessel() {
  local word=${COMP_WORDS[COMP_CWORD]} command=${COMP_WORDS[1]} words
  COMPREPLY=()
  if ((COMP_CWORD == 1)); then
    words='show tree --help --version'
  elif [[ $command == show && $word == -* ]]; then
    words=--json
  elif [[ $command != show && $command != tree || $word == -* ]]; then
    return
  else
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
    return
  fi
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}
complete -F _tessel tessel
