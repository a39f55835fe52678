#!/usr/bin/env bash
# Installs the Debian packages that the build needs, when any is missing.
# Sourced by the other scripts; safe to run again.
set -euo pipefail

plexus_packages=(
  build-essential cmake ninja-build ccache pkg-config
  libboost-dev libicu-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  libfmt-dev nlohmann-json3-dev libcli11-dev libtomlplusplus-dev
  python3-jsonschema
)

# Installs the given packages, when any is missing.
plexus_install_packages() {
  local missing=()
  for package in "$@"; do
    if ! dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed"; then
      missing+=("$package")
    fi
  done
  if [ "${#missing[@]}" -eq 0 ]; then
    return 0
  fi
  echo "Installing missing packages: ${missing[*]}"
  local sudo=""
  if [ "$(id -u)" -ne 0 ]; then
    sudo="sudo"
  fi
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

plexus_install_deps() {
  plexus_install_packages "${plexus_packages[@]}"
}
