#!/usr/bin/env bash
# check.sh BUILD: installs the build into a folder of its own, and builds and runs a project outside against it, by
# find_package and by pkg-config, in C and in C++. Also holds the README's program to the one that is run here.
set -euo pipefail
build=$1
here=$(cd "$(dirname "$0")" && pwd)
source=$here/../..
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix

cmake --install "$build" --prefix "$prefix" >"$work/install.log"
openssl x509 -in "$source/samples/certificate.pem" -outform DER -out "$work/certificate.der"
expected="serial number: $(openssl x509 -in "$source/samples/certificate.pem" -noout -serial | cut -d= -f2)"

run() {
  [[ $("$1" "$work/certificate.der") == "$expected" ]] || { echo "$1 does not print the serial number"; exit 1; }
  "$2" "$work/certificate.der"
}

cmake -S "$here" -B "$work/build" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >"$work/configure.log"
cmake --build "$work/build" >"$work/build.log"
run "$work/build/read_certificate_c" "$work/build/read_certificate_cpp"

library=$(dirname "$(find "$prefix" -name libtessel.so)")
export PKG_CONFIG_PATH=$library/pkgconfig LD_LIBRARY_PATH=$library
read -ra flags <<<"$(pkg-config --cflags --libs tessel)"
cc -std=c99 -Wall -Wextra -Wpedantic -Werror "$here/read_certificate.c" -o "$work/c" "${flags[@]}"
c++ -std=c++11 -Wall -Wextra -Wpedantic -Werror "$here/read_certificate.cpp" -o "$work/cpp" "${flags[@]}"
run "$work/c" "$work/cpp"
unset LD_LIBRARY_PATH

# The library depends on nothing but the C library.
if readelf -d "$library/libtessel.so" | grep NEEDED | grep -v 'libc\.so'; then exit 1; fi

"$prefix/bin/tessel" show "$work/certificate.der" | grep -q "Serial"

# The README shows the same program.
awk '/^```c$/ {on = 1; next} /^```$/ {on = 0} on' "$source/README.md" | diff - "$here/read_certificate.c"
