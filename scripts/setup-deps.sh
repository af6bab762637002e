#!/usr/bin/env bash
# Installs the Debian packages the project needs, only those that are missing.
set -euo pipefail

packages=(
  build-essential cmake ninja-build ccache pkg-config
  qtbase5-dev qtbase5-dev-tools libqt5svg5-dev qttools5-dev-tools
  libjsoncpp-dev libfmt-dev libspdlog-dev
  libprotobuf-dev protobuf-compiler
  libgtest-dev libgmock-dev libbenchmark-dev
  libsqlite3-dev
  clang libclang-rt-14-dev
  xvfb xauth fonts-wqy-microhei
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "Installing missing packages: ${missing[*]}"
SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -q
$SUDO apt-get install -y -q --no-install-recommends "${missing[@]}"
