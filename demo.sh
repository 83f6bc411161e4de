#!/bin/sh
# Builds the plug-in and shows what it reports of the sample machine in demo/.
#
#   ./demo.sh [OPTION...] [CLASS...]      as kraid-inventory has them
set -eu
cd "$(dirname "$0")"
. scripts/setup.sh
need build
build release -DKRAID_BUILD_TESTS=OFF

# The plug-in looks for the RAID manager in /usr/KelvMgr. A private view of the file system has
# demo/ laid over /usr, so that the folder is there for this one run and for nobody else.
exec scripts/with-sample-machine.sh build/release/bin/kraid-inventory --root demo "$@"
