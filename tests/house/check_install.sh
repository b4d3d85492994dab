#!/bin/sh
# Installs the build into a folder of its own and builds an outside program against it, once as find_package sees it
# and once as pkg-config does. Usage: check_install.sh BUILD_FOLDER CXX LIBDIR EXTRA_CXX_FLAGS
set -eu
build=$1 cxx=$2 libdir=$3 flags=$4
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# The program starts the library, which looks for the user's folders.
export HOME="$work" XDG_CONFIG_HOME="$work/config" XDG_DATA_HOME="$work/data"
export LD_LIBRARY_PATH="$work/tree/$libdir${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}"

cmake --install "$build" --prefix "$work/first" >"$work/log" || { cat "$work/log"; exit 1; }
# An installed tree may be moved.
mv "$work/first" "$work/tree"

# Public headers lie at the top of rooms, and all of them serve a program by themselves.
headers=$(cd "$work/tree/include" && find tsRtm -name '*.hpp' | sed 's|^\./||' | sort)
internal=$(echo "$headers" | grep '/.*/.*/') && { echo "installed, but not public:" $internal; exit 1; }
for header in $headers; do echo "#include <$header>"; done >"$work/all.cpp"
"$cxx" -std=c++20 $flags -fsyntax-only -I"$work/tree/include" "$work/all.cpp"
echo "$(echo "$headers" | wc -l) headers installed"

cmake -S "$here/consumer" -B "$work/build" -G Ninja -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_CXX_FLAGS="$flags" \
    -DCMAKE_PREFIX_PATH="$work/tree" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
cmake --build "$work/build" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
said=$("$work/build/consumer")  # by itself: its exit status ends the check
echo "find_package: $said"
[ ! -x "$work/build/paper" ] || echo "desktop: $("$work/build/paper" 2>/dev/null)"

export PKG_CONFIG_PATH="$work/tree/$libdir/pkgconfig"
[ -f "$(pkg-config --variable=runtimedir tsRtm)/KeyTS.dat" ] || { echo "runtimedir is wrong"; exit 1; }
# In the tree's own folder of programs, from where the tree's data files are found.
# shellcheck disable=SC2046,SC2086  # words are wanted
"$cxx" -std=c++20 $flags "$here/consumer/main.cpp" -o "$work/tree/bin/consumer" $(pkg-config --cflags --libs tsRtm)
said=$("$work/tree/bin/consumer")
echo "pkg-config $(pkg-config --modversion tsRtm): $said"
