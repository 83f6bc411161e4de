#!/bin/sh
# Fails when a source file includes what stands above it or beside it, when two files share a name, and
# when README's picture lacks a folder. Each row: a folder, and the only folders whose headers its
# files may include.
set -eu
cd "$(dirname "$0")/.."
status=0

may_include() {  # may_include FOLDER HEADER_PATTERN...
  folder=$1
  shift
  allowed=$(printf '%s|' "$folder/" "$@")
  if git grep -nE '^#include "' -- "$folder/*.cc" "$folder/*.h" |
      grep -vE "#include \"(${allowed%|})"; then
    echo "check-layers: not for $folder/ to see (it may include: $*)" >&2
    status=1
  fi
}

# The plug-in, and what a host is. The schema's reader serves the build and the tests.
may_include schema schema/
may_include host/include hmz/
may_include host/standin hmz/ standin/
texts='schema/published_texts\.h'
may_include model hmz/ $texts
may_include collect hmz/ $texts model/
may_include raidmgr hmz/ $texts model/ collect/
may_include plugin hmz/ $texts model/ collect/ raidmgr/

# The command: what was committed and the schema may be seen by all of it, processes by its top.
data='standin/(repository|schema)\.h'
base=inventory/base/
machine=inventory/machine/
print=inventory/print/
may_include inventory/base hmz/ "$data"
may_include inventory/runs hmz/ standin/ $texts $base
may_include inventory/machine hmz/ "$data" $texts $base
may_include inventory/print hmz/ "$data" $base $machine
may_include inventory/print/html $base $machine 'inventory/print/view\.h'
may_include inventory/command hmz/ standin/ $texts $base $machine $print inventory/runs/

# Data may: a recording's files are named by the commands of the tools.
same=$(git ls-files '*.cc' '*.h' '*.sh' '*.md' ':!demo' ':!tests/machines' | grep -v '/README\.md$' |
  sed 's,.*/,,' | sort | uniq -d)
if [ -n "$same" ]; then
  echo "check-layers: more than one file has the name" $same >&2
  status=1
fi

# The rooms are those of the build: host/ and inventory/ have several.
picture=$(sed -n "/^## The house/,/^Read/p" README.md)
for folder in $(git ls-files '*/*' | sed -E 's,^((host|inventory)/[^/]+|[^/]+)/.*,\1,' | sort -u); do
  case $folder in .* | */CMakeLists.txt) continue ;; esac
  if ! printf '%s' "$picture" | grep -qwF -- "$folder"; then
    echo "check-layers: README's picture of the house lacks $folder/" >&2
    status=1
  fi
done
exit $status
