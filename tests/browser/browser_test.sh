#!/bin/sh
# browser_test.sh BUILD_DIR SOURCE_DIR: browser_test.mjs, where it can be run.
for program in node tidy pdftotext chromium; do
  command -v "$program" >/dev/null && continue
  echo "skipped: there is no $program; need_browser in scripts/setup.sh installs it"
  exit 77
done
exec node "$(dirname "$0")/browser_test.mjs" "$@"
