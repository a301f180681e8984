#!/usr/bin/env bash
# install.sh FOLDER: installs the packages for Debian in FOLDER below a root of their own, which has nothing but the
# libraries that they depend on, uses them there, removes them, and looks for what is left. Runs as root.
set -euo pipefail
folder=$(cd "$1" && pwd)
here=$(cd "$(dirname "$0")" && pwd)
architecture=$(dpkg --print-architecture)
root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT

database=$root/var/lib/dpkg

fail() { echo "$*" >&2 && exit 1; }
# Some machines are told to install no documents.
dpkg_there() {
  dpkg --root="$root" --path-include='/usr/*' "$@" >>"$root/log" 2>&1 || { cat "$root/log" >&2; return 1; }
}
install_there() { dpkg_there --install "$folder/$1"_*_"$architecture.deb"; }
cannot_remove() { ! dpkg --root="$root" --simulate --purge "$1" >/dev/null 2>&1; }
tool_there() { chroot "$root" /usr/bin/tessel "$@"; }
all_there() {
  find "$root" -path "$database/*" -prune -o -print | sort
  dpkg-query --admindir="$database" --show
}

# The root has the shared libraries of the dependencies, direct and indirect, and dpkg knows of them.
mkdir -p "$database"/{info,updates,triggers}
for package in "$folder"/*.deb; do dpkg-deb --field "$package" Depends; done >"$root/depends"
mapfile -t direct < <(grep -oE '\b[a-z0-9.+-]+( \(|,|$)' "$root/depends" | tr -d ' (,' | sort -u | grep -v tessel)
mapfile -t needed < <(apt-cache depends --recurse --no-recommends --no-suggests --no-conflicts --no-breaks \
  --no-replaces --no-enhances "${direct[@]}" | grep '^[a-z]' | sort -u)
dpkg-query --status "${needed[@]/%/:$architecture}" >"$database/status"
for package in "${needed[@]}"; do
  cp /var/lib/dpkg/info/"$package"{,":$architecture"}.list "$database/info" 2>/dev/null || true
done
dpkg-query --listfiles "${needed[@]/%/:$architecture}" | grep -E '\.so(\.[0-9.]+)?$' | sed 's|^/||' | sort -u |
  tar --create --directory=/ --files-from=- | tar --extract --directory="$root"
cp "$here/../../samples/certificate.pem" "$root"
touch "$root/log"
before=$(all_there)

install_there libtessel1
install_there tessel
cannot_remove libtessel1 || fail "the tool does not depend on the library"
[[ $(tool_there --version) == "tessel "*TESSEL* ]] || fail "the tool does not tell its version"
[[ $(tool_there show /certificate.pem) == *"Serial number"* ]] || fail "the tool does not show a certificate"
for file in man/man1/tessel.1.gz bash-completion/completions/tessel; do
  [[ -s $root/usr/share/$file ]] || fail "the tool comes without $file"
done
dpkg_there --purge tessel

install_there libtessel-dev
cannot_remove libtessel1 || fail "the files for development do not depend on the library"
"$here/../consumer/check.sh" "$root/usr"
dpkg_there --purge libtessel-dev
dpkg_there --purge libtessel1

diff <(echo "$before") <(all_there) || fail "the packages leave something behind"
