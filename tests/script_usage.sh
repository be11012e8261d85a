#!/usr/bin/env bash
# The scripts explain themselves, and say in one line what is wrong with an option.
set -uo pipefail
cd "$(dirname "$0")/.."

faults=0
fault() {
  echo "$1"
  faults=$((faults + 1))
}

for script in ./check ./run fuzz/run tools/multi-device tools/viewer-load tools/video/play tools/video/measure tools/setup/install-dependencies.sh tools/setup/fetch.sh; do
  help=$("$script" --help 2>&1) || fault "$script --help ends with status $?"
  [[ $help == usage:* ]] || fault "$script --help does not begin with its usage"
done
for script in ./check fuzz/run tools/multi-device tools/viewer-load tools/video/play tools/video/measure tools/setup/install-dependencies.sh tools/setup/fetch.sh; do
  message=$("$script" --no-such-option 2>&1)
  status=$?
  [[ $status -eq 2 ]] || fault "$script --no-such-option ends with status $status, not 2"
  [[ $message == *"unknown option --no-such-option"* && $message != *$'\n'* ]] ||
    fault "$script --no-such-option says: $message"
done
exit $((faults > 0))
