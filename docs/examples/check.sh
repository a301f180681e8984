#!/usr/bin/env bash
# check.sh PROGRAMS: holds docs/guide.md to the examples. A block of C or C++ code is the file that was linked to last, and
# every example has its block; the commands of the sessions print what is shown below them, one after the other, beside
# the samples.
set -euo pipefail
programs=$1
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/shown" "$work/room"
cp "$here"/../../samples/*.pem "$work/room"

awk -v work="$work" '
  /^```$/ { block = "" }
  block == "c" || block == "cpp" { print > (work "/shown/" file) }
  block == "console" { print > (work "/expected") }
  block == "console" && /^\$ / { print substr($0, 3) > (work "/commands") }
  /^```./ { block = substr($0, 4) }
  block == "" && match($0, /examples\/[a-z_]+\.[a-z]+/) { file = substr($0, RSTART + 9, RLENGTH - 9) }
' "$here/../guide.md"

for example in "$here"/*.c "$here"/*.cpp "$here/example.h"; do
  diff -u --label guide.md --label "${example##*/}" "$work/shown/${example##*/}" "$example"
done

# A command that fails says so in a line that the guide does not have.
while read -r command; do
  printf '$ %s\n' "$command"
  (cd "$work/room" && PATH=$programs:$PATH && eval "$command") </dev/null 2>&1 || echo "exit status $?"
done <"$work/commands" >"$work/printed"

# Links lead to files where the guide stands, and where it is installed with its examples beside it.
links=$(grep -oE '\]\([^)#]+\)' "$here/../guide.md" | sed 's/^](//; s/)$//' | sort -u)
for link in $links; do
  [[ $link == examples/* && -e $here/../$link ]] || { echo "the guide links to $link"; exit 1; }
done
# Programs in C++ may use the header of the examples too.
c++ -std=c++20 -Wall -Wextra -Wpedantic -Werror -fsyntax-only -x c++ -I "$here/../../include" "$here/console.h"

# Places in the library's sources change, and blanks at the ends of lines do not last in an edited guide.
settled() { sed -E 's/found at [a-z0-9_]+\.[a-z]+:[0-9]+$/found/; s/[a-z0-9_]+\.cpp:[0-9]+\)$/)/; s/ +$//' "$1"; }
diff -u --label guide.md --label printed <(settled "$work/expected") <(settled "$work/printed")

# An older certificate, with a name in BMPString, is shown in UTF-8 too.
cd "$work/room"
printf '%s\n' '[req]' prompt=no utf8=yes string_mask=pkix distinguished_name=name '[name]' 'CN=Пример €' >bmp.cnf
openssl req -x509 -newkey rsa:2048 -nodes -keyout /dev/null -config bmp.cnf -out bmp.pem 2>/dev/null
"$programs/read_certificate" <bmp.pem >bmp.txt
grep -q '^  2\.5\.4\.3 Пример €$' bmp.txt || { cat bmp.txt; exit 1; }
