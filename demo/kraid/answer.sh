# Sourced by the stand-in tools, which are called TOOL COMMAND CONTROLLER OPTION
# and have set $banner and $known, the COMMAND-OPTION pairs that they know.
# Prints TOOL.d/CONTROLLER/COMMAND-OPTION.txt; a file of the same name that ends
# in .err, where there is one, goes to standard error first.

fail() {
  printf '%s\n\n%s\nCommand failed.\n' "$banner" "$1"
  exit "${2:-1}"
}

if [ $# -ne 3 ]; then
  echo "usage: ${0##*/} COMMAND CONTROLLER OPTION" >&2
  fail 'Missing or surplus argument.' 2
fi
case " $known " in
  *" $1-$3 "*) ;;
  *) fail "Unknown command: $1 $3" ;;
esac
case $2 in
  [1-8]) [ -d "$0.d/$2" ] || fail "Controller $2 is not present." ;;
  *) fail "Controller $2 is not present." ;;
esac

text=$0.d/$2/$1-$3
[ -f "$text.txt" ] || fail "Controller $2 does not support $1 $3."
if [ -f "$text.err" ]; then cat "$text.err" >&2; fi
exec cat "$text.txt"
