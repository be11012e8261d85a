#!/usr/bin/env bash
# Installs the Debian packages that this project needs and that are not there yet.
set -euo pipefail

# group  package  what it is for
readonly packages='
core    g++                  build
core    cmake                build
core    ninja-build          build
core    ccache               build
core    pkg-config           build
core    nlohmann-json3-dev   documents
core    libsimdjson-dev      documents
core    libcli11-dev         options
core    libmosquitto-dev     bus
core    libsdbus-c++-dev     provider
core    libsqlite3-dev       properties
core    libcpp-httplib-dev   viewer
core    prometheus-cpp-dev   metrics
core    zlib1g-dev           recordings
core    libzstd-dev          recordings
core    android-liblog-dev   log
core    libsystemd-dev       log
core    libgtest-dev         tests
core    googletest           tests
core    mosquitto            tests
core    mosquitto-clients    tests
core    dbus                 tests
core    openssl              tests
core    python3-minimal      tests
core    python3-jsonschema   tests
core    python3-paho-mqtt    tests
core    python3-dasbus       tests
core    libbenchmark-dev     benchmarks
libcxx  clang                build
libcxx  libc++-14-dev        build
libcxx  libc++abi-14-dev     build
libcxx  libclang-rt-14-dev   build
libcxx  libc6-dev-arm64-cross build
clang   clang                build
clang   libclang-rt-14-dev   build
lint    clang-format         lint
lint    clang-tidy           lint
web     nodejs               browser
web     npm                  browser
web     chromium             browser
packages debhelper           packages
packages help2man            packages
packages lintian             packages
packages mmdebstrap          packages
video   libopencv-dev        video
video   opencv-data          video
video   opencv-doc           video
video   ffmpeg               video
video   libavformat-dev      video
video   libswscale-dev       video
video   libwebrtc-audio-processing-dev video
video   npm                  model
pipewire gstreamer1.0-tools   camera
pipewire gstreamer1.0-plugins-base camera
pipewire gstreamer1.0-pipewire camera
'

usage() {
  cat <<'EOF'
usage: tools/setup/install-dependencies.sh [--list] [GROUP...]

Installs what is missing of the groups (default: core), as root or through sudo. Says nothing when all is there.

  core    compiler, libraries and test programs: what ./run and ./check need
  libcxx  clang with libc++, for ./check --libcxx
  clang   clang, its sanitizers and its fuzzer, for ./check --sanitize and --fuzz
  lint    clang-format and clang-tidy, for ./check --lint
  web     Node.js and a browser, for the viewer's own tests
  video   OpenCV and ffmpeg, for real video
  pipewire  GStreamer, for real video as a camera that other programs can choose
  packages  debhelper and what checks packages, for ./check --packages

  --list  only print the missing packages
EOF
}

wrong_usage() {
  echo "install-dependencies.sh: $1 (see --help)" >&2
  exit 2
}

# A program from elsewhere serves as well as the package: a newer Node.js, for example.
is_there_without_package() {
  case $1 in
    nodejs) node -e 'process.exit(parseInt(process.versions.node) >= 18 ? 0 : 1)' 2>/dev/null ;;
    npm | chromium | ffmpeg) command -v "$1" >/dev/null ;;
    *) false ;;
  esac
}

missing_packages() {
  local group package purpose installed
  installed=$(dpkg-query -W -f='${db:Status-Status} ${Package}\n' 2>/dev/null | sed -n 's/^installed //p')
  while read -r group package purpose; do
    if [[ " $* " == *" $group "* ]] && ! grep -qxF "$package" <<<"$installed" &&
      ! is_there_without_package "$package"; then
      echo "$package"
    fi
  done <<<"$packages"
}

as_root() {
  if [[ $(id -u) -eq 0 ]]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    echo "install-dependencies.sh: needs root or sudo to install: ${missing[*]}" >&2
    exit 1
  fi
}

apt_get() {
  as_root env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=300 -o Dpkg::Use-Pty=0 "$@"
}

only_list=false
groups=()
for argument in "$@"; do
  case $argument in
    --help | -h) usage; exit 0 ;;
    --list) only_list=true ;;
    core | libcxx | clang | lint | web | video | pipewire | packages) groups+=("$argument") ;;
    -*) wrong_usage "unknown option $argument" ;;
    *) wrong_usage "unknown group $argument" ;;
  esac
done
[[ ${#groups[@]} -gt 0 ]] || groups=(core)
command -v dpkg-query >/dev/null || {
  echo "install-dependencies.sh: this is not a Debian machine; install by hand what its table names" >&2
  exit 1
}

listing=$(missing_packages "${groups[@]}")
if [[ -z $listing ]]; then
  exit 0
fi
mapfile -t missing <<<"$listing"
if $only_list; then
  printf '%s\n' "${missing[@]}"
  exit 0
fi

echo "== install ${missing[*]}"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { apt_get update && apt_get install --no-install-recommends "${missing[@]}"; } </dev/null >"$log" 2>&1; then
  cat "$log" >&2
  echo "install-dependencies.sh: apt-get could not install: ${missing[*]}" >&2
  exit 1
fi
