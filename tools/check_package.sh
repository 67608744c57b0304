#!/bin/bash
# Checks the package as another project gets it. Makes a release build and installs it; builds the examples and test
# projects against the installed files, with and without Qt, with the libraries' compiler and with another one, and
# with the sources embedded; and inspects the Debian packages.
#
#   tools/check_package.sh              of the release preset
#   tools/check_package.sh --whole      also builds build/plain without Qt and tests that, makes packages of it, and
#                                       builds Plovix in another project
set -uo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname -- "$(readlink -f -- "$0")")/common.sh"
need_packages "${packages_program[@]}" "${packages_tests[@]}" "${packages_package[@]}"
outside=$(mktemp -d) || exit
trap 'rm -rf -- "$outside"' EXIT
export LC_ALL=C.UTF-8 QT_QPA_PLATFORM=offscreen XDG_DATA_HOME=$outside/data XDG_CONFIG_HOME=$outside/config
case $* in
  '') whole='' ;;
  --whole) whole=1 ;;
  *) fail "usage: tools/check_package.sh [--whole]" ;;
esac
plain=$root/build/plain
other_compiler=clang++-19

# A release without Qt and without a preset, except that warnings are errors. Its tests must pass.
build_plain() {
  with_lock env CMAKE_GENERATOR=Ninja \
    cmake -S "$root" -B "$plain" -DCMAKE_BUILD_TYPE=Release -DPLOVIX_QT=OFF -DPLOVIX_WERROR=ON || return
  with_lock cmake --build "$plain" --parallel "$(nproc)" || return
  ctest --test-dir "$plain" --output-on-failure --no-tests=error --parallel 2 >"$outside/log" || { cat "$outside/log"; return 1; }
  say "plain release: $(grep 'tests passed' "$outside/log")"
}

check_untested() {
  cmake -S "$root" -B "$outside/untested" -DPLOVIX_QT=OFF -DBUILD_TESTING=OFF >/dev/null &&
    [[ ! -e $outside/untested/tests ]]
}

# install_tree TREE NAME [COMPONENT]: into a prefix of that name, as a user would install it for others to build against.
install_tree() { DESTDIR='' cmake --install "$1" --prefix "$outside/$2" ${3:+--component "$3"} >/dev/null || exit; }

# runs NAME PROGRAM: whether the terminal's host stores a task and reads it again, or the guide's first wizard walks its road.
runs() {
  local tasks output
  tasks=$(mktemp -u "$outside/tasks.XXXX")
  output=$("$2" "$tasks" new <"$root/examples/terminal_host/nightly.txt" && "$2" "$tasks") || fail "$1 failed: $output"
  [[ $output == *$'\n1: Nightly report, scheduled, 1 action(s)' || $output == $'1 task: Say hello\n1 task: Say hello' ]] ||
    fail "$1 printed something else: $output"
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
  mkdir -p "$work" && cp -r "$prefix/share/doc/libplovix-dev/examples" "$root/tests/consumer" "$work" || return
  (cd "$prefix/include" && find plovix -name '*.h' -printf '#include <%p>\n' | sort) >"$work/consumer/all_headers.cpp"
  echo 'int main() {}' >>"$work/consumer/all_headers.cpp"
  build_outside "$work/examples" "$prefix" -DCMAKE_DISABLE_FIND_PACKAGE_Qt6="$([[ $qt == ON ]] || echo ON)"
  [[ $qt == OFF || -x $work/examples/build/plovix_minimal_host ]] || fail "$name: the example with windows is not built"
  build_outside "$work/consumer" "$prefix" -DEXAMPLES="$work/examples" -DCOMPONENTS="$components"
  runs "$name: shared libraries" "$work/examples/build/plovix_terminal_host"
  runs "$name: pages loaded at run time" "$work/examples/build/plovix_loading_host"
  runs "$name: static libraries" "$work/consumer/build/static_host"
  for program in consumer/build/all_headers consumer/build/static_check examples/build/plovix_check_host; do
    (cd "$work" && "$work/$program" &>"$outside/log") || { cat "$outside/log"; fail "$name: $program does not run"; }
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
  c++ -std=c++20 -o "$outside/by_hand" "$root/examples/terminal_host/main.cpp" $flags || return
  LD_LIBRARY_PATH=${library_folder%/pkgconfig} runs "pkg-config" "$outside/by_hand"
  flags=$(pkg-config --static --cflags --libs plovix-host plovix) || return
  # shellcheck disable=SC2086
  c++ -std=c++20 -o "$outside/by_hand" "$root/examples/terminal_host/main.cpp" -Wl,-Bstatic ${flags//-licuuc/} \
    -Wl,-Bdynamic $flags || return
  runs "pkg-config --static" "$outside/by_hand"
}

check_missing_component() {
  local prefix=$1 output
  output=$(cmake -S "$root/tests/consumer" -B "$outside/missing" -DCMAKE_PREFIX_PATH="$prefix" -DCOMPONENTS="Core;Qt" \
    -DEXAMPLES="$root/examples" 2>&1) && fail "a package without Qt was found as one with Qt"
  [[ $output == *"no component Qt"* ]] || fail "a package without Qt does not say so: $output"
}

# Without Qt on the machine, a package with the component Qt is still found if that component is optional.
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

# The guide's first project, by a compiler that did not build the libraries.
check_other_compiler() {
  build_outside "$outside/wizard" "$outside/plain" -DCMAKE_CXX_COMPILER="$other_compiler"
  runs "$other_compiler against the libraries of $(c++ --version | head -n 1)" "$outside/wizard/build/first_wizard"
}

# Plovix in the build of another project, which gets only the libraries, and the Qt library only if it asks for it.
check_embedding() {
  local project=$outside/embedding
  local settings=(-DPLOVIX="$root" -DFIRST_WIZARD="$outside/wizard/first_wizard.cpp" -DCMAKE_CXX_COMPILER="$other_compiler")
  cp -r "$root/tests/embedding" "$project" || return
  cmake -S "$project" -B "$outside/fetched" "${settings[@]}" -DFETCH=ON -DPLOVIX_QT=ON >/dev/null || return
  cmake -S "$project" -B "$outside/embedded" "${settings[@]}" >/dev/null || return
  [[ $whole ]] || return 0
  build_outside "$project" "" "${settings[@]}"
  runs "by add_subdirectory" "$project/build/first_wizard"
  runs "by add_subdirectory, static" "$project/build/static_wizard"
  DESTDIR='' cmake --install "$project/build" --prefix "$outside/nothing" >/dev/null || return
  [[ ! -e $outside/nothing ]] || fail "a project that contains Plovix installs it"
}

# refuses INCLUDE-FOLDER HEADER SETTING WORDS: the header refuses a setting that would change its meaning and says
# what it needs.
refuses() {
  local words
  words=$(c++ -std=c++20 "$3" -I "$1" -E -x c++ -include "$2" /dev/null 2>&1 >/dev/null) && fail "$2 takes $3"
  [[ $words == *"#error"*"$4"* ]] || fail "$2 does not say why it does not take $3: $words"
}

check_requirements() {
  local include=$1 header
  while read -r header; do
    refuses "$include" "$header" -fno-rtti 'run-time type information'
  done < <(cd "$include" && find plovix -name '*.h')
  refuses "$include" plovix/host/value.h -D_GLIBCXX_DEBUG _GLIBCXX_DEBUG
  refuses "$include" plovix/host/value.h -fno-exceptions exceptions
  refuses "$include" plovix/host/value.h -std=c++17 'C++20'
}

# field DEB FIELD
field() { dpkg-deb --field "$1" "$2"; }

# check_debian_packages TREE NAME...: the tree makes exactly these packages; they can be installed and follow Debian's rules.
check_debian_packages() {
  local tree=$1 debs=$outside/debs-${1##*/} system=$outside/system-${1##*/} deb name names=()
  shift
  cpack -G DEB --config "$tree/CPackConfig.cmake" -B "$debs" >/dev/null || return
  for deb in "$debs"/*.deb; do
    name=$(field "$deb" Package)
    names+=("$name")
    say "$name: depends on $(field "$deb" Depends)"
    dpkg-deb --extract "$deb" "$system"
    grep -q /usr/share/common-licenses/Apache-2.0 "$system/usr/share/doc/$name/copyright" || fail "$name has no licence"
    [[ $name != libplovix*1 ]] || [[ $(dpkg-deb --ctrl-tarfile "$deb" | tar --list) == *shlibs*triggers* ]] ||
      fail "$name lacks shlibs or triggers, which make its libraries known"
  done
  [[ ${names[*]} == "$*" ]] || fail "other packages than $*: ${names[*]}"
  apt-get --simulate install "$debs"/*.deb >"$outside/log" || { cat "$outside/log"; return 1; }
  [[ -e $system/usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)/libplovix.so.1 ]] ||
    fail "the libraries are not where those of this architecture are"
}

# check_manager_package DEB SYSTEM: the manager brings no windows, its units are the system's, and it starts.
check_manager_package() {
  local deb=$1 system=$2 unit
  field "$deb" Depends | grep -q libqt6core || fail "the manager's package does not depend on what it uses"
  field "$deb" Depends | grep -Eq 'libqt6(widgets|gui)' && fail "the manager's package brings windows"
  for unit in user/plovix-manager.service system/plovix-manager@.service; do
    grep -qx ExecStart=/usr/bin/plovix-manager "$system/usr/lib/systemd/$unit" || fail "the unit $unit is missing or starts something else"
  done
  [[ $("$system/usr/bin/plovix-manager" --version) == plovix-manager\ * ]] || fail "the packaged manager does not start"
  field "$debs"/plovix_*.deb Recommends | grep -q plovix-manager || fail "the program does not recommend the manager"
}

# Only the Qt packages bring Qt; Debian's own check accepts all packages; the program starts.
check_qt_packages() {
  local debs=$outside/debs-release system=$outside/system-release deb
  lintian --allow-root --fail-on error "$debs"/*.deb || return
  field "$debs"/libplovix-qt1_*.deb Depends | grep -q libqt6widgets6 || fail "the package of the Qt library does not depend on Qt"
  field "$debs"/libplovix-qt-dev_*.deb Depends | grep -q 'libplovix-dev.*qt6-base-dev\|qt6-base-dev.*libplovix-dev' ||
    fail "the Qt development package lacks a dependency"
  for deb in "$debs"/libplovix1_*.deb "$debs"/libplovix-dev_*.deb; do
    { field "$deb" Depends Recommends; dpkg-deb --contents "$deb"; } | grep -i qt && fail "$deb brings Qt"
  done
  desktop-file-validate "$system/usr/share/applications/plovix.desktop" || return
  python3 -c 'import sys, xml.dom.minidom; xml.dom.minidom.parse(sys.argv[1])' \
    "$system/usr/share/icons/hicolor/scalable/apps/plovix.svg" || return
  check_manager_package "$debs"/plovix-manager_*.deb "$system" || return
  printf 'open\nshow\n' | "$system/usr/bin/plovix" script - | grep -q '"AutoTaskType"\|Plovix.AutoTaskType' ||
    fail "the packaged program does not run"
}

build release
# The blocks of the guide whose first lines name these files.
mkdir "$outside/wizard" && awk -v folder="$outside/wizard/" '/^```/ { file = "" } file { print >file }
  /^(#|\/\/) (CMakeLists.txt|first_wizard.cpp)$/ { file = folder $2 }' "$root/docs/guide.md"
install_tree "$root/build/release" release
if [[ $whole ]]; then
  build_plain || fail "a plain release build fails"
  install_tree "$plain" plain
else  # what a build without Qt installs
  install_tree "$root/build/release" plain runtime
  install_tree "$root/build/release" plain development
fi
check_untested || fail "BUILD_TESTING=OFF is not honoured"
check_prefix "with Qt" "$outside/release" "Core;Qt"
[[ -z $(find "$outside/plain" -name '*qt*') ]] || fail "the package without Qt contains Qt files"
check_prefix "without Qt" "$outside/plain" Core
check_other_compiler || fail "the libraries work only with their own compiler"
check_embedding || fail "Plovix cannot be a part of another project's build"
check_requirements "$outside/plain/include"
"$root/tools/build_docs.sh" "$outside/release/include" || exit
check_pkg_config "$outside/plain" || fail "the pkg-config files do not work"
check_missing_component "$outside/plain"
check_optional_qt "$outside/release" || fail "a package is not found without its optional component"
[[ ! $whole ]] || check_debian_packages "$plain" libplovix-dev libplovix1 || fail "the Debian packages without Qt are not as they should be"
if ! check_debian_packages "$root/build/release" libplovix-dev libplovix-qt-dev libplovix-qt1 libplovix1 plovix-manager plovix ||
  ! check_qt_packages; then
  fail "the Debian packages are not as they should be"
fi
