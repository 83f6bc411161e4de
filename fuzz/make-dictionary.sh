#!/bin/sh
# make-dictionary.sh FILE...: the texts in these C++ sources as a dictionary for libFuzzer.
set -eu
cat "$@" | grep -v '^ *#include' | grep -oE '"([^"\\]|\\["\\nt])+"' |
  LC_ALL=C grep -v '[^ -~]' | sed 's/\\n/\\x0A/g; s/\\t/\\x09/g' | sort -u
