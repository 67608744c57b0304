#!/bin/bash
# Checks that ./run and ./test work on a Debian 12 that has only its essential packages.
#
#   tools/check_minimal_debian.sh FOLDER [COMMAND...]
#
# Needs root, debootstrap and about 3 GB in FOLDER, which must not exist yet and is removed in the end. The
# package mirror and the network settings are this machine's. The tree is copied as it is, with uncommitted
# changes. A COMMAND, for instance .ci/run or bash, is run in the copy as root instead of the checks.
set -uo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname -- "$(readlink -f -- "$0")")/common.sh"

(($#)) || fail "usage: tools/check_minimal_debian.sh FOLDER [COMMAND...]"
((EUID == 0)) || fail "only root can do that"
# Uses its own mount namespace, so that everything mounted below is gone however this process ends.
[[ ${PLOVIX_OWN_MOUNTS-} ]] ||
  PLOVIX_OWN_MOUNTS=1 exec unshare --mount --propagation private -- "$(readlink -f -- "$0")" "$@"
unset PLOVIX_OWN_MOUNTS

need_packages debootstrap
mkdir -- "$1" || exit
debian=$(readlink -f -- "$1")/debian
shift
trap 'cd / && umount --recursive "$debian/proc" "$debian/dev/shm" 2>/dev/null
      mountpoint -q "$debian/proc" || rm -rf --one-file-system -- "${debian%/debian}"' EXIT

inside() { chroot "$debian" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root "$@"; }
as_user() { inside HOME=/home/user setpriv --reuid=1000 --regid=1000 --clear-groups -- "$@"; }

make_debian() {
  local mirror file
  # shellcheck disable=SC2016  # apt-get fills them in
  mirror=$(apt-get indextargets --format '$(CODENAME) $(REPO_URI)' 'Created-By: Packages' |
    sed -n 's/^bookworm //p' | head -n 1)
  [[ $mirror ]] || fail "this machine's apt knows no mirror of Debian 12"
  debootstrap --variant=minbase bookworm "$debian" "$mirror" >&2 || fail "debootstrap failed"
  rm -f -- "$debian/etc/apt/sources.list"
  for file in sources.list sources.list.d keyrings trusted.gpg.d; do
    [[ -e /etc/apt/$file ]] && cp -rT -- "/etc/apt/$file" "$debian/etc/apt/$file"
  done
  apt-config dump | grep '^Acquire::' >"$debian/etc/apt/apt.conf.d/90acquire"
  cp -L -- /etc/resolv.conf /etc/hosts "$debian/etc/"
  mkdir -p -- "$debian/dev/shm"
  mount -t proc proc "$debian/proc" || fail "cannot mount $debian/proc"
  mount -t tmpfs tmpfs "$debian/dev/shm" || fail "cannot mount $debian/dev/shm"
}

copy_tree() {
  mkdir -p -- "$debian$1"
  source_files '*' | tar -C "$root" -c -T - | tar -C "$debian$1" -x --no-same-owner || fail "cannot copy the tree"
}

# expect WHAT COMMAND...: the command succeeds.
expect() {
  say "--- $1"
  local started=$SECONDS
  "${@:2}" || fail "FAILED: $1"
  say "--- passed after $((SECONDS - started)) s: $1"
}

refuses_without_root() {
  local words
  words=$(as_user /home/user/plovix/run script /dev/null 2>&1 >/dev/null) && return 1
  printf '%s\n' "$words" >&2
  tail -n 1 <<<"$words" | grep -q 'install them as root.*g++.*qt6-base-dev'
}

install_sudo() {
  inside sh -c 'apt-get -qq update && apt-get -qq install -y --no-install-recommends sudo' >/dev/null 2>&1 &&
    inside useradd --uid 1000 user && echo 'user ALL=(ALL) NOPASSWD: ALL' >"$debian/etc/sudoers.d/user"
}

# Through a link, from another folder, with a relative file name: standard output has only JSON.
runs_a_script() {
  printf 'open\nshow\ncancel\n' >"$debian/tmp/task.txt"
  "$1" ln -sf "$2/run" "/tmp/plovix-$1" &&
    "$1" sh -c "cd /tmp && ./plovix-$1 script task.txt >/tmp/output-$1" &&
    grep -q '^{.*}$' "$debian/tmp/output-$1" && ! grep -v '^{.*}$' "$debian/tmp/output-$1"
}

# Without a display the program says so once and reads a script from standard input.
runs_without_display() {
  printf 'open\nshow\n' | inside /root/plovix/run >"$debian/tmp/output" 2>"$debian/tmp/words" || return
  cat "$debian/tmp/words" >&2
  grep -q '^{.*}$' "$debian/tmp/output" && [[ -s $debian/tmp/words ]]
}

starts_at_once() {
  local started=${EPOCHREALTIME/[.,]/} took
  inside sh -c 'echo | /root/plovix/run script -' || return
  took=$(((${EPOCHREALTIME/[.,]/} - started) / 1000))
  say "$took ms"
  ((took < 500))
}

expect "a minimal Debian 12" make_debian
copy_tree /root/plovix
if (($#)); then
  inside sh -c 'cd /root/plovix && exec "$@"' sh "$@"
  exit
fi
copy_tree /home/user/plovix
chown -R 1000:1000 "$debian/home/user"

expect "a user who cannot install packages sees what is missing" refuses_without_root
expect "sudo" install_sudo
expect "a user's ./run installs through sudo, builds and starts" runs_a_script as_user /home/user/plovix
expect "./test installs as root, builds and passes" inside /root/plovix/test
expect "./run builds and starts" runs_a_script inside /root/plovix
expect "./run without a display" runs_without_display
expect "./run with nothing to build starts within half a second" starts_at_once
say "all passed"
