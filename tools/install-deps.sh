#!/usr/bin/env bash
# Installs what the build and the tests need, from Debian's packages only.
set -euo pipefail
packages=(build-essential cmake pkg-config python3-dev libiniparser-dev libgtest-dev libgmock-dev
          libbenchmark-dev libgl-dev libcairo2-dev fonts-dejavu-core mypy python3-pytest)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi
echo "Installing: ${missing[*]}"
SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO=sudo; fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -q || true
$SUDO apt-get install -y -q --no-install-recommends "${missing[@]}"
