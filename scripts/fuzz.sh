#!/usr/bin/env bash
# Builds the fuzz harnesses of tests/fuzz and runs each for a given time.
#   scripts/fuzz.sh <objstream|model|parser|executer|uncert|all> <seconds> [--keep]
# With clang (Debian clang and libclang-rt-dev) the harnesses run on libFuzzer
# with AddressSanitizer and UBSan, in build-fuzz/; without it on the plain
# seeded driver, in build-fuzz-plain/. Each run starts from the kept corpus
# and the seeds (every class stored, the examples, the test programs); findings
# go to <build>/artifacts/<harness>/. --keep merges the inputs that add
# coverage into tests/fuzz/corpus/<harness>/ (libFuzzer only), which the
# tests replay.
set -euo pipefail
cd "$(dirname "$0")/.."

usage() {
  echo "usage: scripts/fuzz.sh <objstream|model|parser|executer|uncert|all> <seconds> [--keep]" >&2
  exit 2
}
[ $# -ge 2 ] || usage
all=(objstream model parser executer uncert)
case "$1" in
  all) harnesses=("${all[@]}") ;;
  objstream | model | parser | executer | uncert) harnesses=("$1") ;;
  *) usage ;;
esac
seconds=$2
keep=0
[ "${3:-}" = --keep ] && keep=1

bash scripts/install-deps.sh
if command -v clang++ >/dev/null; then
  build=build-fuzz compiler=clang++ libfuzzer=1
else
  build=build-fuzz-plain compiler=g++ libfuzzer=0
  [ $keep -eq 0 ] || { echo "--keep needs libFuzzer (clang)" >&2; exit 2; }
fi
cmake -S . -B "$build" -DCMAKE_CXX_COMPILER=$compiler -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTARN_FUZZ=ON >/dev/null
cmake --build "$build" -j2 --target fuzz_seeds "${harnesses[@]/#/fuzz_}"
bin=$PWD/$build/tests/fuzz

for h in "${harnesses[@]}"; do
  work=$PWD/$build/corpus/$h artifacts=$PWD/$build/artifacts/$h scratch=$PWD/$build/scratch/$h
  mkdir -p "$work" "$artifacts" "$scratch" "tests/fuzz/corpus/$h"
  case $h in
    objstream) "$bin/fuzz_seeds" objstream "$work" ;;
    model) "$bin/fuzz_seeds" model "$work" examples/*.dyn ;;
    uncert) cp examples/mass.txt "$work" ;;
    *) cp examples/*.cxx tests/interpreter/programs/*.cxx "$work" ;;
  esac
  cp tests/fuzz/corpus/$h/* "$work" 2>/dev/null || true
  options=(-max_total_time="$seconds" -timeout=10 -artifact_prefix="$artifacts/")
  if [ $libfuzzer -eq 1 ]; then
    # Worker processes, so that a finding is kept and the run goes on.
    options+=(-fork=1 -ignore_crashes=1 -ignore_ooms=1 -ignore_timeouts=1)
  fi
  leaks=1
  echo "== $h for $seconds s"
  # Programs that write files write them in the scratch directory.
  (cd "$scratch" && ASAN_OPTIONS=detect_leaks=$leaks "$bin/fuzz_$h" "${options[@]}" -detect_leaks=$leaks "$work") >"$build/fuzz-$h.log" 2>&1 || true
  grep -E "^(Done|#[0-9]+)" "$build/fuzz-$h.log" | tail -1
  echo "findings: $(ls "$artifacts" | wc -l) in $artifacts"
  if [ $keep -eq 1 ]; then
    # Edges only, not their counts: the kept corpus stays small.
    ASAN_OPTIONS=detect_leaks=0 "$bin/fuzz_$h" -merge=1 -use_counters=0 -detect_leaks=0 "tests/fuzz/corpus/$h" "$work" 2>&1 | tail -1
  fi
done
