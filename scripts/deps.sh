# Sourced by scripts/run and scripts/test: installs the Debian packages a step
# needs, only those that are missing, through sudo when not root.

vorlune_build_packages=(
  cmake ninja-build g++ pkg-config
  qt6-base-dev qt6-svg-dev qt6-qpa-plugins libqt6svg6
  fonts-dejavu-core fonts-symbola
)
vorlune_test_packages=(
  libgtest-dev libgmock-dev clang-format
  clang libclang-rt-14-dev
  xvfb xauth openbox tint2 xfce4-panel xdotool imagemagick dbus dbus-bin x11-utils
  desktop-file-utils appstream
)
vorlune_run_packages=(xvfb xauth tint2 openbox imagemagick)

vorlune_install_missing() {
  local missing=()
  local pkg
  for pkg in "$@"; do
    if ! dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q 'install ok installed'; then
      missing+=("$pkg")
    fi
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing: ${missing[*]}"
  local sudo=()
  [ "$(id -u)" -ne 0 ] && sudo=(sudo)
  "${sudo[@]}" apt-get update -qq
  DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

vorlune_configure_and_build() {
  local dir=$1
  shift
  if [ ! -f "$dir/build.ninja" ]; then
    cmake -S "$vorlune_root" -B "$dir" -G Ninja "$@"
  fi
  cmake --build "$dir" -j "$(nproc)"
}
