#!/usr/bin/env bash
# check.sh BUILD|PREFIX: builds and runs a project outside against what is installed below PREFIX, by find_package and by
# pkg-config, in C and in C++. A BUILD is installed into a folder of its own first. Also holds the README's program to the
# one that is run here. CFLAGS and CXXFLAGS are what compilers take them for.
set -euo pipefail
prefix=$1
here=$(cd "$(dirname "$0")" && pwd)
source=$here/../..
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

openssl x509 -in "$source/samples/certificate.pem" -outform DER -out "$work/certificate.der"
expected="serial number: $(openssl x509 -in "$source/samples/certificate.pem" -noout -serial | cut -d= -f2)"
if [[ -e $1/CMakeCache.txt ]]; then
  prefix=$work/prefix
  cmake --install "$1" --prefix "$prefix" >"$work/install.log"
  "$prefix/bin/tessel" show "$work/certificate.der" | grep "Serial" >/dev/null
fi

run() {
  [[ $("$1" "$work/certificate.der") == "$expected" ]] || { echo "$1 does not print the serial number"; exit 1; }
  "$2" "$work/certificate.der"
}

library=$(dirname "$(find "$prefix" -name libtessel.so)")
# CMake does not look into lib32 on Debian.
[[ $library != */lib32 ]] || export tessel_DIR=$library/cmake/tessel
cmake -S "$here" -B "$work/build" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" >"$work/configure.log"
cmake --build "$work/build" >"$work/build.log"
run "$work/build/read_certificate_c" "$work/build/read_certificate_cpp"

export PKG_CONFIG_PATH=$library/pkgconfig LD_LIBRARY_PATH=$library
read -ra flags <<<"$(pkg-config --cflags --libs tessel)"
cc ${CFLAGS:-} -std=c99 -Wall -Wextra -Wpedantic -Werror "$here/read_certificate.c" -o "$work/c" "${flags[@]}"
c++ ${CXXFLAGS:-} -std=c++11 -Wall -Wextra -Wpedantic -Werror "$here/read_certificate.cpp" -o "$work/cpp" "${flags[@]}"
c++ ${CXXFLAGS:-} -std=c++20 -O2 -Wall -Wextra -Wpedantic -Werror "$source/docs/examples/inspect.cpp" -o "$work/cpp20" \
  "${flags[@]}"
run "$work/c" "$work/cpp"
unset LD_LIBRARY_PATH

# The library depends on nothing but the C library.
if readelf -d "$library/libtessel.so" | grep NEEDED | grep -v 'libc\.so'; then exit 1; fi

# The README shows the same program.
awk '/^```c$/ {on = 1; next} /^```$/ {on = 0} on' "$source/README.md" | diff - "$here/read_certificate.c"
