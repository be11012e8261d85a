#!/usr/bin/env bash
# The files of a package that its programs and this source make: licences, changelogs, manual pages, completion.
# usage: package_files.sh PREFIX PACKAGE DEBIAN_CHANGELOG [PROGRAM...]
set -euo pipefail
prefix=$1 package=$2 debian_changelog=$3
shift 3
source=$(dirname "$0")/..

doc=$prefix/share/doc/$package
mkdir -p "$doc"
gzip -9nc "$source/CHANGELOG.md" >"$doc/changelog.gz"
gzip -9nc "$debian_changelog" >"$doc/changelog.Debian.gz"
{
  cat "$source/packaging/copyright"
  [[ $package != productionrules-video ]] || cat "$source/packaging/copyright-video"
  # Headers that are compiled in; of a shared library its own package tells.
  for compiled_in in nlohmann-json3-dev libcli11-dev; do
    printf '\n-- %s --\n' $compiled_in
    cat /usr/share/doc/$compiled_in/copyright
  done
} >"$doc/copyright"

# manual_page NAME COMMAND...
manual_page() {
  local name=$1 summary
  shift
  summary=$("$@" --help | head -1)
  # Defaults that lie beside the program stand in the folder of this build.
  help2man --no-info --section=1 --name="${summary%.}" --version-string="$name $version" "$*" |
    sed 's,=/[^ ]*\(/lib/[^ ]*libproductionrules\),=/usr\1,' |
    gzip -9n >"$prefix/share/man/man1/$name.1.gz"
}

for program in "$@"; do
  mkdir -p "$prefix/share/man/man1"
  name=${program##*/}
  version=$("$program" --version | sed 's/.* //')
  manual_page "$name" "$program"
  for command in $("$program" --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z-]\+\) .*/\1/p'); do
    manual_page "$name-$command" "$program" "$command"
  done
  if "$program" completion bash >/dev/null 2>&1; then
    mkdir -p "$prefix/share/bash-completion/completions" "$prefix/share/fish/vendor_completions.d"
    "$program" completion bash >"$prefix/share/bash-completion/completions/$name"
    "$program" completion fish >"$prefix/share/fish/vendor_completions.d/$name.fish"
  fi
done
