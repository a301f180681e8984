#!/usr/bin/env bash
# wine.sh PROGRAM [ARGUMENT...]: runs a program for Windows, of 32 or 64 bits, under the Wine of Debian's package wine64.
# What it needs besides lies below build/wine and is made at the first call.
set -euo pipefail
wine=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)/build/wine

# Wine of 64 bits runs programs of 32 when it has its own DLLs for them. These come in another architecture's package,
# which is fetched in the version that is installed, by lists of packages that the machine's own do not see.
fetch_dlls_for_32_bits() {
  local version options
  version=$(dpkg-query -W -f='${Version}' libwine)
  options=(-q -o "Dir::State::lists=$wine/lists" -o "Dir::Cache=$wine/cache" -o APT::Sandbox::User=root
    -o APT::Architectures::=amd64 -o APT::Architectures::=i386)
  rm -rf "$wine"
  mkdir -p "$wine/lists/partial" "$wine/cache/archives/partial"
  cd "$wine"
  # One list that cannot be had does no harm when the package is in another.
  apt-get "${options[@]}" update || true
  apt-get "${options[@]}" download "libwine:i386=$version"
  dpkg --fsys-tarfile libwine_*_i386.deb | tar -x ./usr/lib/i386-linux-gnu/wine/i386-windows
  mv usr/lib/i386-linux-gnu/wine dlls
  rm -r lists cache usr libwine_*_i386.deb
}

# Without Wine's messages, which would stand among those of the program, and without its offers to install more.
export WINEPREFIX=$wine/prefix WINEDLLPATH=$wine/dlls WINEDEBUG=-all WINEDLLOVERRIDES=mscoree,mshtml=

[[ -e $wine/ready ]] || (fetch_dlls_for_32_bits) >&2
# Debian's server closes down as soon as no program is left, and breaks the connection of one that starts just then: here
# it waits ten minutes for the next one. Where it runs already, this does nothing.
mkdir -p "$wine/prefix"
/usr/lib/wine/wineserver -p600 >/dev/null 2>&1 || true
if [[ ! -e $wine/ready ]]; then
  wine wineboot --init >&2
  touch "$wine/ready"
fi
exec wine "$@"
