#!/usr/bin/env bash
# Builds Tarn with its tests and runs them all; fails when any test fails.
#   scripts/test.sh          build-test/, optimised with debug information, every test (and
#                            the benchmarks built, not run);
#                            then build-asan/, the object core, numerics, systems,
#                            language and editor suites again under AddressSanitizer and UBSan
#   scripts/test.sh --plain  the first half only
#   scripts/test.sh --asan   build-asan/, every test under the sanitizers
set -euo pipefail
cd "$(dirname "$0")/.."

# The suites that need no window system, with the replayed fuzz corpus, and the
# toolkit and the editors (offscreen), whose drawings own and share many objects:
# the sanitizer pass repeats them. Only the command panel's suite, which runs the
# whole program, is left to the plain pass.
core_suites=(quill_tests algebra_tests control_tests reverse_tests interpreter_tests fuzz_replay_tests
  trellis_tests editor_tests model_tests gui_tests docgen_tests debugger_tests)

mode=all
for arg in "$@"; do
  case "$arg" in
    --plain) mode=plain ;;
    --asan) mode=asan ;;
    *)
      echo "usage: scripts/test.sh [--plain | --asan]" >&2
      exit 2
      ;;
  esac
done

bash scripts/install-deps.sh
export QT_QPA_PLATFORM=offscreen

# The benchmarks are built (not run) with the tests, so that a change cannot leave them behind.
run_plain() {
  cmake -S . -B build-test -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTARN_BENCH=ON
  cmake --build build-test -j2
  ctest --test-dir build-test --output-on-failure -j2
}

# With arguments, only those test programs are built and run.
run_sanitized() {
  cmake -S . -B build-asan -DCMAKE_BUILD_TYPE=Debug -DTARN_BENCH=OFF -DTARN_SANITIZE=ON
  # Leaks stay on; the suppressions name what a library keeps for the life of the process.
  export LSAN_OPTIONS="suppressions=$PWD/tests/lsan.supp:print_suppressions=0:detect_leaks=1"
  export ASAN_OPTIONS="detect_leaks=1:malloc_context_size=128"
  if [ $# -eq 0 ]; then
    cmake --build build-asan -j2
    ctest --test-dir build-asan --output-on-failure -j2
  else
    cmake --build build-asan -j2 --target "$@"
    local labels
    labels=$(IFS='|'; echo "^($*)\$")
    ctest --test-dir build-asan --output-on-failure -j2 -L "$labels"
  fi
}

case "$mode" in
  plain) run_plain ;;
  asan) run_sanitized ;;
  all)
    run_plain
    run_sanitized "${core_suites[@]}"
    ;;
esac
