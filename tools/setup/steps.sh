# What ./run, ./check and .ci/run share; sourced by them at the root of the project.

# Precompiled headers are cached as well.
export CCACHE_SLOPPINESS=pch_defines,time_macros
# Paths below the checkout count relative to it, so that another clone finds what this one compiled.
export CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1

jobs=${PR_JOBS:-$(nproc)}

say() { echo "== $*"; }

wrong_usage() {
  echo "${0##*/}: $1 (see --help)" >&2
  exit 2
}

# Runs a command whose output matters only when it fails.
quietly() {
  local log status=0
  log=$(mktemp)
  "$@" >"$log" 2>&1 || status=$?
  if [[ $status -ne 0 ]]; then
    cat "$log" >&2
  fi
  rm -f "$log"
  return $status
}

install_groups() { tools/setup/install-dependencies.sh "$@"; }

# What is not there is told, and done without.
fetch() { tools/setup/fetch.sh "$@" || true; }

# configure PRESET [CMAKE OPTION...]
configure() {
  say "configure $1"
  quietly cmake --preset "$@"
}

# build PRESET [TARGET...]
build() {
  local preset=$1
  shift
  say "build $preset${*:+: $*}"
  quietly cmake --build "build/$preset" --parallel "$jobs" ${*:+--target "$@"}
}
