#!/bin/bash
# Checks the package as another project gets it: installs what was built, builds the examples and a project of
# its own against that, with Qt and on a machine's worth of files without Qt, and looks into the Debian packages.
#
#   tools/check_package.sh              after builds of the release and standard presets
set -uo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname -- "$(readlink -f -- "$0")")/common.sh"
need_packages "${packages_program[@]}" "${packages_package[@]}"
outside=$(mktemp -d) || exit
trap 'rm -rf -- "$outside"' EXIT
export QT_QPA_PLATFORM=offscreen XDG_DATA_HOME=$outside/data XDG_CONFIG_HOME=$outside/config
wanted="Nightly report: every 2 days, 1 action"

# runs NAME PROGRAM: whether the headless host walks its road.
runs() {
  local output
  output=$("$2") || fail "$1 failed"
  [[ $output == *"$wanted"* ]] || fail "$1 printed something else: $output"
  say "$1 runs"
}

# build_outside FOLDER PREFIX CMAKE-ARGUMENTS...: into FOLDER/build, against the package in PREFIX.
build_outside() {
  local folder=$1 prefix=$2
  shift 2
  cmake -S "$folder" -B "$folder/build" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" "$@" >/dev/null ||
    fail "$folder: cannot be configured"
  cmake --build "$folder/build" >"$outside/log" || { cat "$outside/log"; fail "$folder: does not build"; }
}

# check_prefix NAME PREFIX COMPONENTS: builds and runs everything against one installed package.
check_prefix() {
  local name=$1 prefix=$2 components=$3 qt=OFF work=$outside/$1 header program
  [[ $components == *Qt* ]] && qt=ON
  mkdir -p "$work" && cp -r "$root/examples" "$root/tests/consumer" "$work" || return
  (cd "$prefix/include" && find plovix -name '*.h' -printf '#include <%p>\n' | sort) >"$work/consumer/all_headers.cpp"
  echo 'int main() {}' >>"$work/consumer/all_headers.cpp"
  build_outside "$work/examples" "$prefix" -DEXAMPLES_QT=$qt \
    -DCMAKE_DISABLE_FIND_PACKAGE_Qt6="$([[ $qt == ON ]] || echo ON)"
  build_outside "$work/consumer" "$prefix" -DEXAMPLES="$work/examples" -DCOMPONENTS="$components"
  runs "$name: shared libraries" "$work/examples/build/headless_host"
  runs "$name: pages loaded at run time" "$work/examples/build/loading_host"
  runs "$name: static libraries" "$work/consumer/build/static_host"
  for program in all_headers kit static_kit; do
    "$work/consumer/build/$program" >"$outside/log" || { cat "$outside/log"; fail "$name: $program does not run"; }
  done
  header=$(wc -l <"$work/consumer/all_headers.cpp")
  say "$name: $((header - 1)) headers"
}

check_pkg_config() {
  local prefix=$1 flags library_folder
  library_folder=$(dirname -- "$(find "$prefix" -name plovix.pc)")
  export PKG_CONFIG_PATH=$library_folder
  flags=$(pkg-config --cflags --libs plovix-host plovix) || return
  # shellcheck disable=SC2086  # several words
  c++ -std=c++20 -o "$outside/by_hand" "$root/examples/headless_host/main.cpp" $flags || return
  LD_LIBRARY_PATH=${library_folder%/pkgconfig} runs "pkg-config" "$outside/by_hand"
  flags=$(pkg-config --static --cflags --libs plovix-host plovix) || return
  # shellcheck disable=SC2086
  c++ -std=c++20 -o "$outside/by_hand" "$root/examples/headless_host/main.cpp" -Wl,-Bstatic ${flags//-licuuc/} \
    -Wl,-Bdynamic $flags || return
  runs "pkg-config --static" "$outside/by_hand"
}

check_missing_component() {
  local prefix=$1 output
  output=$(cmake -S "$root/tests/consumer" -B "$outside/missing" -DCMAKE_PREFIX_PATH="$prefix" -DCOMPONENTS="Core;Qt" \
    -DEXAMPLES="$root/examples" 2>&1) && fail "a package without Qt was found as one with Qt"
  [[ $output == *"no component Qt"* ]] || fail "a package without Qt does not say so: $output"
}

# Where Qt is not, a package that offers it is found without it, unless it has to be there.
check_optional_qt() {
  local prefix=$1 project=$outside/optional
  mkdir -p "$project" && cat >"$project/CMakeLists.txt" <<'PROJECT' || return
cmake_minimum_required(VERSION 3.25)
project(optional LANGUAGES CXX)
find_package(Plovix REQUIRED COMPONENTS Core OPTIONAL_COMPONENTS Qt)
if(Plovix_Qt_FOUND OR NOT TARGET Plovix::Core)
  message(FATAL_ERROR "the optional component was found: ${Plovix_Qt_FOUND}")
endif()
PROJECT
  cmake -S "$project" -B "$project/build" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_DISABLE_FIND_PACKAGE_Qt6=ON >/dev/null
}

# What a Debian package depends on, and that the program in it starts.
check_debian_packages() {
  local deb system=$outside/system name
  cpack -G DEB --config "$root/build/release/CPackConfig.cmake" -B "$outside/debs" >/dev/null || return
  for deb in "$outside"/debs/*.deb; do
    name=$(dpkg-deb --field "$deb" Package)
    say "$name: depends on $(dpkg-deb --field "$deb" Depends)"
    dpkg-deb --extract "$deb" "$system"
    [[ -s $system/usr/share/doc/$name/copyright ]] || fail "$name has no licence"
    [[ $name != libplovix*1 ]] || dpkg-deb --ctrl-tarfile "$deb" | tar --list | grep -q shlibs ||
      fail "$name does not say what depends on its libraries"
  done
  dpkg-deb --field "$outside"/debs/libplovix-qt1_*.deb Depends | grep -q libqt6widgets6 ||
    fail "the package of the Qt library does not ask for Qt"
  dpkg-deb --field "$outside"/debs/libplovix1_*.deb Depends | grep -qi qt &&
    fail "the package of the pages asks for Qt"
  desktop-file-validate "$system/usr/share/applications/plovix.desktop" || return
  python3 -c 'import sys, xml.dom.minidom; xml.dom.minidom.parse(sys.argv[1])' \
    "$system/usr/share/icons/hicolor/scalable/apps/plovix.svg" || return
  printf 'open\nshow\n' | "$system/usr/bin/plovix" script - | grep -q '"AutoTaskType"\|Plovix.AutoTaskType' ||
    fail "the packaged program does not run"
}

for preset in release standard; do
  [[ -f $root/build/$preset/CMakeCache.txt ]] || fail "build the preset $preset first"
  DESTDIR='' cmake --install "$root/build/$preset" --prefix "$outside/$preset" >/dev/null || exit
done
check_prefix "with Qt" "$outside/release" "Core;Qt"
[[ -z $(find "$outside/standard" -name '*qt*') ]] || fail "the package without Qt has files of it"
check_prefix "without Qt" "$outside/standard" Core
"$root/tools/build_docs.sh" "$outside/release/include" || exit
check_pkg_config "$outside/standard" || fail "the pkg-config files do not serve"
check_missing_component "$outside/standard"
check_optional_qt "$outside/release" || fail "a package is not found without its optional component"
check_debian_packages || fail "the Debian packages are not as they should be"
