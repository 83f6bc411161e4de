#!/bin/sh
# Stand-in for the RAID manager's start script: the collector only looks whether
# it is there, and then reads the log beside it.
echo "KelvaRAID Manager: sample installation, events in ${0%/*}/KelvEvtA.log"
