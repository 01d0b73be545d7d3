#!/usr/bin/env bash
# Builds Tarn (Release) into build/ and runs it with the arguments given.
# Without arguments the command panel opens in examples/, on the shipped examples.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$(pwd)

bash scripts/install-deps.sh
cmake -S . -B build -DCMAKE_BUILD_TYPE=Release
cmake --build build --target tarn -j"$(nproc)"

if [ $# -eq 0 ] && [ -d examples ]; then
  cd examples
fi
exec "$root/build/src/panel/tarn" "$@"
