#!/usr/bin/env bash
# The interpreter against CPython and Lua on the programs of bench/interpreter/programs:
# each round runs the three twins of a program one after the other (paired runs), the
# table gives the median wall time of each and the ratios of Tarn to the others.
#   bench/compare/interp.sh [rounds] [tarn binary]
# The binary defaults to build/src/panel/tarn (a Release build: cmake -S . -B build
# -DCMAKE_BUILD_TYPE=Release && cmake --build build --target tarn). Lua is left out
# when lua5.4 is not installed.
set -euo pipefail
cd "$(dirname "$0")/../.."
rounds=${1:-5}
tarn=${2:-build/src/panel/tarn}
python=/usr/bin/python3
lua=$(command -v lua5.4 || true)
programs=bench/interpreter/programs

[ -x "$tarn" ] || { echo "no Tarn binary at $tarn" >&2; exit 1; }

# Seconds taken by the command, its output thrown away; a failure ends the script.
seconds() {
  local start end
  start=$(date +%s%N)
  "$@" > /dev/null 2>&1 || { echo "failed: $*" >&2; exit 1; }
  end=$(date +%s%N)
  echo "$(( (end - start) / 1000 ))e-6"
}

median() { sort -g | awk '{ v[NR] = $1 } END { print (NR % 2) ? v[(NR + 1) / 2] : (v[NR / 2] + v[NR / 2 + 1]) / 2 }'; }

printf '%-10s %9s %9s %9s %11s %11s\n' program tarn python lua tarn/python tarn/lua
for source in "$programs"/*.cxx; do
  name=$(basename "$source" .cxx)
  : > /tmp/interp_t.$$ ; : > /tmp/interp_p.$$ ; : > /tmp/interp_l.$$
  for _ in $(seq "$rounds"); do
    seconds "$tarn" -run "$source" >> /tmp/interp_t.$$
    seconds "$python" "$programs/$name.py" >> /tmp/interp_p.$$
    if [ -n "$lua" ]; then seconds "$lua" "$programs/$name.lua" >> /tmp/interp_l.$$; fi
  done
  t=$(median < /tmp/interp_t.$$)
  p=$(median < /tmp/interp_p.$$)
  if [ -n "$lua" ]; then
    l=$(median < /tmp/interp_l.$$)
    awk -v n="$name" -v t="$t" -v p="$p" -v l="$l" \
      'BEGIN { printf "%-10s %9.3f %9.3f %9.3f %11.2f %11.2f\n", n, t, p, l, t / p, t / l }'
  else
    awk -v n="$name" -v t="$t" -v p="$p" \
      'BEGIN { printf "%-10s %9.3f %9.3f %9s %11.2f %11s\n", n, t, p, "-", t / p, "-" }'
  fi
done
rm -f /tmp/interp_t.$$ /tmp/interp_p.$$ /tmp/interp_l.$$
