# What ./run, ./test and .ci/run share: the Debian packages, installing them, building a preset.
# Sourced, never executed. Everything here writes to standard error and leaves standard input alone; standard
# input and output belong to the program that is started in the end.
# shellcheck shell=bash
# shellcheck disable=SC2034  # what is not used here is used by the scripts that source this

root=$(dirname -- "$(dirname -- "$(readlink -f -- "${BASH_SOURCE[0]}")")")
me=${0##*/}

# Without a font, text shows as boxes.
packages_program=(g++ cmake ninja-build qt6-base-dev nlohmann-json3-dev libsqlite3-dev tzdata
                  libicu-dev libqt6widgets6 fonts-dejavu-core)
packages_tests=(libgtest-dev libgmock-dev libical-dev)
packages_benchmarks=(libical-dev libbenchmark-dev)
packages_package=(dpkg-dev file gzip lintian desktop-file-utils pkg-config python3 clang-19)
packages_checks=(clang-format clang-tidy-19 clang-19 llvm-19 doxygen shellcheck python3)
packages_sanitizers=(clang-19 libclang-rt-19-dev llvm-19)
# Without the library's introspection data and the bindings, no script reaches the accessibility bus.
packages_accessibility=(xvfb dbus-daemon at-spi2-core gir1.2-atspi-2.0 python3-gi python3-xlib)

say() { printf '%s: %s\n' "$me" "$*" >&2; }

fail() {
  say "$*"
  exit 1
}

# Runs a command while no other instance of these scripts installs or builds in this tree. The command does
# not inherit the lock, because processes that it leaves running would hold it.
with_lock() {
  local lock=$root/build/.lock
  { mkdir -p -- "$root/build" && : >>"$lock"; } 2>/dev/null ||
    fail "cannot write to $root/build; is it another user's, or read-only?"
  (
    flock --nonblock 9 || { say "waiting for another build in $root to end"; flock 9; }
    "$@" 9>&-
  ) 9>>"$lock" </dev/null >&2
}

# Sets `missing` to the named packages that are not installed.
find_missing() {
  local status package
  local -A installed=()
  missing=()
  while read -r status package; do
    [[ $status == ?i ]] && installed[$package]=1
  done < <(dpkg-query --show --showformat '${db:Status-Abbrev} ${Package}\n' "$@" 2>/dev/null)
  for package; do
    [[ ${installed[$package]-} ]] || missing+=("$package")
  done
}

give_up_on_packages() {
  say "$1: ${missing[*]}"
  fail "install them as root and start again: apt-get update && apt-get install ${missing[*]}"
}

install_packages() {
  local as_root=()
  find_missing "$@"  # another instance may have installed them while this one waited
  ((${#missing[@]})) || return 0
  if ((EUID != 0)); then
    if sudo -n true 2>/dev/null; then
      as_root=(sudo -n)
    elif command -v sudo >/dev/null && { : </dev/tty; } 2>/dev/null; then
      say "sudo is needed to install packages and may ask for your password"
      as_root=(sudo)
    else
      give_up_on_packages "these Debian packages are missing, and only root can install them"
    fi
  fi
  local get=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive
             apt-get -qq -o DPkg::Lock::Timeout=120 -o Dpkg::Use-Pty=0)
  say "installing ${missing[*]}"
  "${get[@]}" update || say "the package lists could not be refreshed; trying the present ones"
  "${get[@]}" install -y --no-install-recommends "${missing[@]}" ||
    give_up_on_packages "these Debian packages could not be installed"
}

# Installs those of the named packages that are missing; ends the script if that is not possible.
need_packages() {
  command -v dpkg-query >/dev/null || {
    say "not a Debian system; it must already have what the packages $* contain"
    return 0
  }
  find_missing "$@"
  ((${#missing[@]} == 0)) || with_lock install_packages "$@" || exit
}

# Configures a tree again if the presets changed or the sources were moved; ninja detects all other changes.
configure() {
  local preset=$1 tree=$root/build/$1 home="CMAKE_HOME_DIRECTORY:INTERNAL=$root" fresh=()
  shift
  if [[ -f $tree/CMakeCache.txt ]]; then
    if ! grep -qxF "$home" "$tree/CMakeCache.txt"; then
      fresh=(--fresh)
    elif (($# == 0)) && [[ -f $tree/build.ninja && ! $root/CMakePresets.json -nt $tree/build.ninja ]]; then
      return 0
    fi
  fi
  say "configuring build/$preset"
  cmake -S "$root" --preset "$preset" "${fresh[@]}" "$@" >/dev/null  # errors are on standard error
}

build_locked() {
  local preset=$1
  shift
  configure "$preset" || return
  # Shows progress, and nothing when everything is up to date.
  NINJA_STATUS='[%f/%t] ' ninja -C "$root/build/$preset" -j "$(nproc)" "$@" 2>&1 |
    sed --unbuffered -e '/^ninja: \(no work to do\|Entering directory\)/d' -e '/Re-checking globbed dir/d'
}

# build PRESET [TARGET...]: brings build/PRESET up to date.
build() {
  with_lock build_locked "$@" || fail "the build of build/$1 failed; the reasons are above"
}

# source_files NAME-PATTERN...: the files of the tree, one per line, relative to the root: those that git tracks
# or would track, or in an export without git everything that is not built.
source_files() {
  local file pattern names=()
  if git -C "$root" rev-parse 2>/dev/null; then
    git -C "$root" ls-files --cached --others --exclude-standard -- "$@"
  else
    for pattern; do names+=(-o -name "$pattern"); done
    (cd -- "$root" && find . -path ./build -prune -o -type f \( "${names[@]:1}" \) -printf '%P\n')
  fi | sort | while read -r file; do
    [[ -e $root/$file ]] && printf '%s\n' "$file"
  done
}
