#!/usr/bin/env bash
# Installs the Debian packages the build needs, when any of them is missing.
# Sourced by the other scripts; does nothing when everything is present.
TARN_PACKAGES=(build-essential cmake pkg-config gfortran libace-dev libgtest-dev libgmock-dev
               libbenchmark-dev libdragonbox-dev libfast-float-dev libconfig++-dev
               liblapacke-dev libgmp-dev libnanoflann-dev clang-14 libclang-rt-14-dev)

tarn_install_deps() {
  local missing=()
  for pkg in "${TARN_PACKAGES[@]}"; do
    dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q "install ok installed" ||
      missing+=("$pkg")
  done
  if ((${#missing[@]})); then
    echo "Installing missing packages: ${missing[*]}"
    local sudo=""
    [[ $(id -u) -ne 0 ]] && sudo="sudo"
    $sudo apt-get update -qq
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
  fi
}
