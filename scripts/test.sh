#!/usr/bin/env bash
# Builds Tarn with its tests and runs them all; fails when any test fails.
#   scripts/test.sh          build-test/, optimised with debug information
#   scripts/test.sh --asan   build-asan/, with AddressSanitizer and UBSan
set -euo pipefail
cd "$(dirname "$0")/.."

build=build-test
options=(-DCMAKE_BUILD_TYPE=RelWithDebInfo -DTARN_BENCH=OFF)
for arg in "$@"; do
  case "$arg" in
    --asan)
      build=build-asan
      options=(-DCMAKE_BUILD_TYPE=Debug -DTARN_BENCH=OFF -DTARN_SANITIZE=ON)
      ;;
    *)
      echo "usage: scripts/test.sh [--asan]" >&2
      exit 2
      ;;
  esac
done

bash scripts/install-deps.sh
cmake -S . -B "$build" "${options[@]}"
cmake --build "$build" -j2
export QT_QPA_PLATFORM=offscreen
if [ "$build" = build-asan ]; then
  # Leaks stay on; the suppressions name the reads that may fail part-way,
  # whose frame the allocation stacks must reach even when reads nest deeply.
  export LSAN_OPTIONS="suppressions=$PWD/tests/lsan.supp:print_suppressions=0:detect_leaks=1"
  export ASAN_OPTIONS="detect_leaks=1:malloc_context_size=128"
fi
ctest --test-dir "$build" --output-on-failure -j2
