#!/usr/bin/env bash
# reproduce.sh BUILD PACKAGES: makes the packages in PACKAGES, of the folder BUILD, once more: from a copy of the
# sources elsewhere, in a folder of another name, in another time zone. Every octet has to be the same.
set -euo pipefail
build=$(cd "$1" && pwd)
packages=$(cd "$2" && pwd)
cd "$(dirname "$0")/../.."
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

mkdir "$work/a copy"
git ls-files -z --cached --others --exclude-standard | xargs -0 cp --parents --target-directory="$work/a copy"
export TZ=Asia/Tokyo
{
  cd "$work/a copy"
  cmake --preset debian -B "$work/other"
  cmake --build "$work/other"
  cpack --config "$work/other/CPackConfig.cmake" -B "$work/packages"
} >"$work/log" 2>&1 || { cat "$work/log" >&2; exit 1; }

cmp "$build/src/libtessel.so" "$work/other/src/libtessel.so"
cmp "$build/tools/tessel" "$work/other/tools/tessel"
for package in "$packages"/*.deb; do cmp "$package" "$work/packages/${package##*/}"; done
