#!/usr/bin/env bash
# Installs the Debian packages Tarn needs to build, test and run.
# Idempotent: when everything is present it only checks and returns.
set -euo pipefail

packages=(
  build-essential cmake pkg-config ccache
  qt6-base-dev
  liblapack-dev libblas-dev
  # The optimised BLAS and LAPACK behind the same libraries at run time, one thread: on a
  # machine of two shared cores threads only wait on each other at the orders of control design.
  libopenblas0-serial
  libsdp-dev
  libgd-dev
  libqcustomplot-dev
  googletest libgtest-dev libbenchmark-dev
  fonts-dejavu-core
  xvfb x11-apps
)

missing=()
for p in "${packages[@]}"; do
  status=$(dpkg-query -W -f='${Status}' "$p" 2>/dev/null || true)
  [ "$status" = "install ok installed" ] || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "Installing: ${missing[*]}"
sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
