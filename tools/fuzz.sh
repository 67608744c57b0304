#!/bin/bash
# Builds the fuzzers in the preset asan and runs each for a few seconds from the seeds in fuzz/corpus, as many at once
# as there are cores.
#
#   tools/fuzz.sh [NAME...]                    for instance: tools/fuzz.sh numeric date
#   PLOVIX_FUZZ_SECONDS=600 tools/fuzz.sh      ten minutes each
#
# The seed is always the same. Inputs that add coverage are kept in build/fuzz/corpus and used by the next run.
# An input that breaks a promise is kept in build/fuzz/found and its path is printed.
set -uo pipefail
# shellcheck source-path=SCRIPTDIR source=common.sh
source "$(dirname -- "$(readlink -f -- "$0")")/common.sh"
seconds=${PLOVIX_FUZZ_SECONDS:-10}

need_packages "${packages_program[@]}" "${packages_tests[@]}" "${packages_sanitizers[@]}"
build asan plovix_fuzzers
mkdir -p "$root/build/fuzz/found" && cd -- "$root/build/fuzz" || exit
(($#)) || set -- "$root"/fuzz/corpus/*
ASAN_SYMBOLIZER_PATH=$(command -v llvm-symbolizer-19 llvm-symbolizer | head -n 1)
export ASAN_SYMBOLIZER_PATH UBSAN_OPTIONS=print_stacktrace=1

# fuzz NAME: prints a row of the table, and what went wrong.
fuzz() {
  local name=$1 log=$1.log status=0 found count rate edges
  mkdir -p "corpus/$name"
  ../asan/bin/fuzz_"$name" -seed=1 -max_total_time="$seconds" -max_len=2048 -timeout=20 -rss_limit_mb=2048 \
    -print_final_stats=1 -artifact_prefix="$PWD/found/$name-" "corpus/$name" "$root/fuzz/corpus/$name" >"$log" 2>&1 || status=1
  if ((status)); then
    grep -v -E '^#[0-9]|NEW_FUNC|Uses:' "$log" | tail -n 60
    found=$(sed -n 's/.*unit written to //p' "$log")
    say "$name: FAILED${found:+; run it again with: build/asan/bin/fuzz_$name $found}"
  fi
  count=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")
  rate=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log")
  edges=$(grep -oE 'cov: [0-9]+' "$log" | tail -n 1)
  printf '%-12s %12s %10s %8s\n' "$name" "${count:-0}" "${rate:-0}" "${edges#cov: }"
  return "$status"
}
export -f fuzz say
export root me seconds

printf '%-12s %12s %10s %8s\n' fuzzer executions per-second edges
printf '%s\n' "${@##*/}" | xargs --max-procs="$(nproc)" --replace=NAME bash -c 'fuzz NAME'
