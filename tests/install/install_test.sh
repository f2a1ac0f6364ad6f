#!/usr/bin/env bash
# Installs into a scratch folder, builds a client against it with find_package and by
# pkg-config, and lets both check the demonstration books through the registry file.
# Usage: install_test.sh SOURCE_FOLDER BUILD_FOLDER C++_COMPILER
set -euo pipefail
source=$1 build=$2 compiler=$3
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
prefix=$scratch/usr

cmake --install "$build" --prefix "$prefix" >/dev/null
# Nothing below may come from the build folder or the user's own settings.
unset VELMORA_MESSAGES VELMORA_COMPONENT LD_LIBRARY_PATH
export VELMORA_REGISTRY=$scratch/registry HOME=$scratch

velmora=$prefix/bin/velmora
"$velmora" --version
"$velmora" register | grep -F "Velmora.clsInitBalCheck" | grep -E "$prefix/.*libvelmora.so$"
"$velmora" demo create "$scratch/demo.db" >/dev/null

# expect CLIENT: its answer on the demonstration books.
expect() {
  "$1" "$scratch/demo.db" | tee /dev/stderr |
    grep -E '^[1-9][0-9]* findings, first: Receivable document.*, may not be closed$' >/dev/null
}

cmake -S "$source/tests/install/client" -B "$scratch/client" -G Ninja \
  -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_COMPILER="$compiler" >/dev/null
cmake --build "$scratch/client" >/dev/null
expect "$scratch/client/client"

pc=$(find "$prefix" -name velmora.pc)
flags=$(PKG_CONFIG_PATH=$(dirname "$pc") pkg-config --cflags --libs velmora)
libraries=$(dirname "$(dirname "$pc")")
# shellcheck disable=SC2086
"$compiler" "$source/tests/install/client/client.cpp" $flags -Wl,-rpath,"$libraries" -o "$scratch/by-pkg-config"
expect "$scratch/by-pkg-config"

man=$prefix/share/man/man1/velmora.1
[ -f "$man" ]
source "$prefix/share/bash-completion/completions/velmora"
# completes WORD... EXPECTED: the last word of a command line is completed to EXPECTED.
completes() {
  local expected=${*: -1}
  COMP_WORDS=("$velmora" "${@:1:$#-1}") COMP_CWORD=$(($# - 1))
  _velmora
  [[ " ${COMPREPLY[*]} " == *" $expected "* ]] || { echo "completion: no $expected" >&2; exit 1; }
}
completes clo close-check
completes demo cr create
completes close-check --db demo.db --la --lang
completes close-check --side "" ap
for word in $("$velmora" --help | sed -nE '1,/^Subcommands:/d; s/^ +([a-z][a-z-]*) .*/\1/p'); do
  grep -qE "^\.BR? .*\b$word\b" "$man" || { echo "velmora.1 does not tell of $word" >&2; exit 1; }
done
