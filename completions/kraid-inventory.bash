# Completion of kraid-inventory's command line for bash. It needs nothing of bash-completion.

_kraid_inventory() {
  local options="--as-host --check --color --compare --expect --format --help --list --log --no-lock --output --passes
    --plugin --root --runs --timeout --tool-timeout --verbose --version"
  local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]}
  local given=" ${COMP_WORDS[*]:1:COMP_CWORD-1} " words="" word
  COMPREPLY=()

  # "--format=js" comes as three words.
  if [[ $current == "=" ]]; then
    current=""
  elif [[ $before == "=" ]]; then
    before=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  if [[ $given == *" -- "* ]]; then
    before="--"
  fi

  case $before in
    --color) words="auto always never" ;;
    --format) words="text json mof" ;;
    --passes | --timeout | -t | --tool-timeout) return ;;
    --runs) words="none failed all" ;;
    --root)
      compopt -o dirnames
      return
      ;;
    --compare | --expect | --log | --output | --plugin)
      compopt -o default
      return
      ;;
    *)
      if [[ $current == -* && $before != "--" ]]; then
        words=$options
      elif [[ $given != *" --check "* && $given != *" --list "* ]]; then
        # Asked for only when it is needed; where the command cannot tell, nothing is offered.
        words=$("${1/#\~\//$HOME/}" --list 2>/dev/null </dev/null | sed 's/[[:space:]].*//')
      fi
      ;;
  esac
  while read -r word; do
    if [[ -n $word && $word == "$current"* ]]; then
      COMPREPLY+=("$word")
    fi
  done <<<"${words//[[:space:]]/$'\n'}"
}

complete -F _kraid_inventory kraid-inventory
