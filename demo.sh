#!/bin/sh
# Builds the plug-in and shows what it reports of the sample machine in demo/.
#
#   ./demo.sh [OPTION...] [CLASS...]      as kraid-inventory has them, --root aside
set -eu
top=$(cd "$(dirname "$0")" && pwd)
(
  cd "$top"
  . scripts/setup.sh
  need build
  build release
)

# The plug-in looks for the RAID manager in /usr/KelvMgr. A private view of the file system has
# demo/ laid over /usr, so that the folder is there for this one run and for nobody else.
exec "$top/scripts/with-sample-machine.sh" "$top/build/release/bin/kraid-inventory" \
  --trust-tools --root "$top/demo" "$@"
