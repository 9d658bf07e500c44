#!/usr/bin/env bash
# Installs the Debian packages the project builds with, if any are missing.
# Run as root (or with sudo available); does nothing when everything is present.
set -euo pipefail

packages=(
  cmake ninja-build g++ pkg-config git
  libpcre2-dev zlib1g-dev libicu-dev libsqlite3-dev
  qt6-base-dev libgl-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  libcli11-dev sqlite3
  fonts-dejavu-core
  clang libclang-rt-dev
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "Installing missing packages: ${missing[*]}"
if [ "$(id -u)" -eq 0 ]; then
  apt_get=(apt-get)
elif command -v sudo >/dev/null 2>&1; then
  apt_get=(sudo apt-get)
else
  echo "error: these packages are missing and this user cannot install them: ${missing[*]}" >&2
  exit 1
fi
export DEBIAN_FRONTEND=noninteractive
"${apt_get[@]}" update -qq
"${apt_get[@]}" install -y -qq --no-install-recommends "${missing[@]}"
