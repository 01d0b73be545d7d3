#!/usr/bin/env bash
# Times the analysis kernels in Tarn and, when GNU Octave with its control package is installed,
# the same operations there on the same systems; prints one table with the ratio of the times.
# Usage: bench/compare/run.sh [build folder with tarn_compare, default build-rel]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
build=$(cd "${1:-$here/../../build-rel}" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
# Only the result lines: the kernels may print warnings of their own.
"$build/bench/tarn_compare" | grep -E "^[a-z0-9]+ [0-9]+ " > tarn.txt
if command -v octave > /dev/null && octave-cli -q --eval 'pkg load control' 2> /dev/null; then
  octave-cli -q "$here/octave_compare.m" 2> /dev/null | grep -E "^[a-z0-9]+ [0-9]+ " > octave.txt
else
  echo "GNU Octave with its control package is not installed: Tarn's column only" >&2
  : > octave.txt
fi
awk 'FILENAME == ARGV[1] { t[$1 " " $2] = $3; r[$1 " " $2] = $4; next }
     !header++ { printf "%-8s %5s %12s %12s %7s %10s %10s\n", "kernel", "order", "Tarn s", "Octave s", "ratio",
                       "Tarn res", "Octave res" }
     { k = $1 " " $2
       if (k in t) printf "%-8s %5s %12.4g %12.4g %7.2f %10.2g %10.2g\n", $1, $2, $3, t[k], $3 / t[k], $4, r[k]
       else printf "%-8s %5s %12.4g %12s %7s %10.2g %10s\n", $1, $2, $3, "-", "-", $4, "-" }' \
  octave.txt tarn.txt
