#!/bin/bash
# Builds the fuzzers with clang and runs each for a few seconds from the seeds in fuzz/corpus.
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

need_packages "${packages_program[@]}" "${packages_sanitizers[@]}"
build fuzz plovix_fuzzers
cd -- "$root/build/fuzz" || exit
(($#)) || set -- "$root"/fuzz/corpus/*
mkdir -p found
symbolizer=$(command -v llvm-symbolizer-19 llvm-symbolizer | head -n 1)
export ASAN_SYMBOLIZER_PATH=$symbolizer UBSAN_OPTIONS=print_stacktrace=1

failed=0
table=$(printf '%-10s %12s %10s %8s' fuzzer executions per-second edges)
for name in "${@##*/}"; do
  mkdir -p "corpus/$name"
  if ! "bin/fuzz_$name" -seed=1 -max_total_time="$seconds" -max_len=2048 -timeout=20 -rss_limit_mb=2048 \
    -print_final_stats=1 -artifact_prefix="$PWD/found/$name-" "corpus/$name" "$root/fuzz/corpus/$name" >log 2>&1; then
    failed=1
    grep -v -E '^#[0-9]|NEW_FUNC|Uses:' log | tail -n 60
    found=$(sed -n 's/.*unit written to //p' log)
    say "$name: FAILED${found:+; run it again with: build/fuzz/bin/fuzz_$name $found}"
  fi
  count=$(sed -n 's/^stat::number_of_executed_units: *//p' log)
  rate=$(sed -n 's/^stat::average_exec_per_sec: *//p' log)
  edges=$(grep -oE 'cov: [0-9]+' log | tail -n 1)
  table+=$'\n'$(printf '%-10s %12s %10s %8s' "$name" "${count:-0}" "${rate:-0}" "${edges#cov: }")
done
printf '%s\n' "$table"
exit "$failed"
