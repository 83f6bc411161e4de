#!/bin/sh
# Fails when a source file includes what stands above it: the plug-in must not see the stand-in host
# or the command, and parsers must not see collectors or publishing.
set -eu
cd "$(dirname "$0")/.."
status=0
forbid() {  # forbid INCLUDED_FOLDERS IN_FOLDERS...
  folders=$1
  shift
  if git grep -nE "^#include \"($folders)/" -- "$@"; then
    echo "check-layers: not allowed in $*: $folders" >&2
    status=1
  fi
}
forbid 'host|standin|inventory' plugin collect model raidmgr
forbid 'plugin|collect|raidmgr' model
forbid 'plugin|raidmgr' collect
forbid 'plugin' raidmgr
forbid 'plugin|collect|model|raidmgr' inventory host
exit $status
