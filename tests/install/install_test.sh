#!/usr/bin/env bash
# Installs a build to a folder of its own, and builds and runs programs against it from outside the
# tree, through the CMake packages and through pkg-config.
#   install_test.sh SOURCE BUILD CFLAGS...
set -eu
source=$1
build=$2
shift 2
flags="$*"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix

fail() {
  echo "FAILED: $*" >&2
  exit 1
}

cmake --install "$build" --prefix "$prefix" >"$work/install.log" 2>&1 ||
  { cat "$work/install.log"; fail "installing"; }
group=$prefix/share/orva/Model.grp
cp -r "$source/tests/install/consumer" "$work/consumer"

text="the old house by the river and the people who live there"
# What each program must answer: an English model.
says_english() {
  answer=$(LD_LIBRARY_PATH=$libdir "$1" "$group" "$text") || fail "$1 does not run"
  case $answer in
    en*) ;;
    *) fail "$1 answers '$answer'" ;;
  esac
}

libdir=$(dirname "$(find "$prefix" -name libpemb.so)")
cmake -S "$work/consumer" -B "$work/by-cmake" -DCMAKE_PREFIX_PATH="$prefix" \
  -DCMAKE_C_FLAGS="$flags" -DCMAKE_CXX_FLAGS="$flags" >"$work/configure.log" 2>&1 ||
  { cat "$work/configure.log"; fail "finding the packages"; }
cmake --build "$work/by-cmake" >"$work/build.log" 2>&1 ||
  { cat "$work/build.log"; fail "building through the packages"; }
for form in static shared; do
  says_english "$work/by-cmake/model_c_$form"
  says_english "$work/by-cmake/model_cxx_$form"
  LD_LIBRARY_PATH=$libdir "$work/by-cmake/charsets_$form" >/dev/null || fail "charsets_$form"
done

export PKG_CONFIG_PATH=$libdir/pkgconfig
cd "$work/consumer"
strict="-Wall -Wextra -Werror -pedantic-errors"
# shellcheck disable=SC2086,SC2046
{
  cc $flags -std=c99 $strict model.c -o c-shared $(pkg-config --cflags --libs pemb)
  c++ $flags -std=c++11 $strict model.cc -o cxx-shared $(pkg-config --cflags --libs pemb)
  cc $flags -std=c99 $strict model.c -o c-static -static $(pkg-config --cflags --libs --static pemb)
  cc $flags -std=c99 $strict charsets.c -o charsets $(pkg-config --cflags --libs orva)
}
says_english ./c-shared
says_english ./cxx-shared
says_english ./c-static
LD_LIBRARY_PATH=$libdir ./charsets >/dev/null || fail "charsets"

# The installed program finds the installed models.
document=$source/examples/documents/fr-utf-8.txt
answer=$(env -u ORVA_MODELS "$prefix/bin/orva" detect "$document")
[ "$answer" = "$document: UTF-8 fr" ] || fail "the program answers '$answer'"
