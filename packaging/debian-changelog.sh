#!/bin/sh
# debian-changelog.sh MAINTAINER: makes Debian's changelog of CHANGELOG.md, which is read from standard
# input. What is not released yet is left out; lines have at most 80 columns.
set -eu
exec awk -v maintainer="$1" '
  function end_item(  words, count, i, line) {
    count = split(item, words, " ")
    line = "  *"
    for (i = 1; i <= count; ++i) {
      if (length(line " " words[i]) > 80) {
        print line
        line = "   "
      }
      line = line " " words[i]
    }
    if (count) print line
    item = ""
  }
  function end_release() {
    if (!released) return
    command = "LC_ALL=C date -u -R -d " released
    command | getline date
    close(command)
    printf "\n -- %s  %s\n", maintainer, date
    released = ""
  }
  !/^  / { end_item() }
  /^## / { end_release() }
  /^## \[[0-9]/ {
    if (releases++) print ""
    released = $4
    printf "kraid-inventory (%s) unstable; urgency=medium\n\n", substr($2, 2, length($2) - 2)
  }
  released && /^(- |  )/ { item = item substr($0, 2) }
  END {
    end_item()
    end_release()
  }
'
