#!/bin/sh
# build_types_test.sh SOURCE_DIR CMAKE [OPTION...]: assertions stay on in every build type. Nothing
# is built for that.
set -eu
source=$1
shift
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$@" -S "$source" -B "$folder" -G "Ninja Multi-Config" -D CMAKE_EXPORT_COMPILE_COMMANDS=ON \
  -D "CMAKE_CONFIGURATION_TYPES=Debug;Release;RelWithDebInfo;MinSizeRel" >/dev/null
[ "$(grep -c '"command":.*/plugin_init\.cc' "$folder/compile_commands.json")" -eq 4 ]
if grep -e -DNDEBUG "$folder/compile_commands.json"; then exit 1; fi
