#!/usr/bin/env bash
# Installs the Debian packages the build needs when they are missing.
# Usage: scripts/ensure-deps.sh [extra-package ...]
set -euo pipefail
pkgs=(cmake make g++ libgtest-dev libgmock-dev libbenchmark-dev binutils "$@")
missing=()
for p in "${pkgs[@]}"; do
  dpkg -s "$p" >/dev/null 2>&1 || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0
echo "installing: ${missing[*]}" >&2
SUDO=""
[ "$(id -u)" -ne 0 ] && command -v sudo >/dev/null && SUDO=sudo
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
$SUDO apt-get install -y -qq --no-install-recommends "${missing[@]}"
