# Completion of kraid-inventory's command line for bash. It needs nothing of bash-completion.

_kraid_inventory() {
  local options="--as-host --brief --check --color --compare --controller --expect --format --help --list
    --log --max-age --max-instances --no-instances --no-lock --output --passes --plugin --record --replay
    --root --runs --sanitize --sanitize-key --timeout --tool-timeout --trust-tools --verbose --version"
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
    --format) words="text html json mof openmetrics" ;;
    --controller | --max-age | --max-instances | --passes | --timeout | -t | --tool-timeout) return ;;
    --runs) words="none failed all" ;;
    --record | --replay | --root)
      compopt -o dirnames
      return
      ;;
    --compare | --expect | --log | --output | --plugin | --sanitize-key)
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
