#!/bin/bash
# Builds the reference of the public headers: build/docs/html/index.html. Fails on a declaration that is not
# documented, on any other warning of Doxygen, and on a header that applications may include but that
# docs/Doxyfile does not cover.
#
#   tools/build_docs.sh [PREFIX/include]     with the include folder of an installed Plovix: checks its headers, too
set -uo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname -- "$(readlink -f -- "$0")")/common.sh"
need_packages doxygen
installed=
(($# == 0)) || installed=$(cd -- "$1" && find plovix -name '*.h') || fail "there are no headers in $1"

# The documented headers, one per line, as an application includes them: plovix/host/value.h.
documented() {
  sed -n '/<compound kind="file">/{n;s/.*<name>\(.*\)<.*/\1/;h;n;s|.*/include/\(.*\)<.*|\1|;G;s/\n//;p}' ../plovix.tag
}

# Every header of this repository that a documented one includes.
included() {
  local header
  while read -r header; do
    sed -n -e 's|^#include <\(plovix/.*\)>.*|\1|p' -e "s|^#include \"\(.*\)\".*|$(dirname "$header")/\1|p" "$header"
  done < <(documented)
}

# Doxygen runs in a folder where `plovix` is a link to this repository, so that it shows headers as they are included.
mkdir -p "$root/build/docs/include" && cd "$root/build/docs/include" || exit
ln -sfn ../../.. plovix
rm -rf ../html
doxygen plovix/docs/Doxyfile || fail "the public headers are not fully documented; see above"

uncovered=$({ included; printf '%s\n' "$installed"; } | sed '/^$/d' | sort -u | comm -13 <(documented | sort -u) -)
[[ -z $uncovered ]] || fail "public, but not covered by docs/Doxyfile:"$'\n'"$uncovered"
say "$(documented | wc -l) headers documented in build/docs/html"
