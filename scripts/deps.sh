# Sourced by scripts/run and scripts/test: installs the Debian packages a step
# needs, only those that are missing, through sudo when not root.

vorlune_build_packages=(
  cmake ninja-build g++ pkg-config
  qt6-base-dev qt6-svg-dev qt6-qpa-plugins libqt6svg6
  fonts-dejavu-core fonts-symbola
)
vorlune_test_packages=(
  libgtest-dev libgmock-dev libbenchmark-dev clang-format python3
  clang libclang-rt-14-dev
  xvfb xauth openbox tint2 xfce4-panel xdotool imagemagick dbus dbus-bin x11-utils
  desktop-file-utils appstream dpkg-dev file
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

# The libFuzzer targets need clang, so they live in a build tree of their own.
vorlune_build_fuzzers() {
  local dir=$vorlune_root/build-fuzz
  if [ ! -f "$dir/build.ninja" ]; then
    CC=clang CXX=clang++ cmake -S "$vorlune_root" -B "$dir" -G Ninja -DBUILD_TESTING=OFF \
      -DVORLUNE_FUZZERS=ON -DCMAKE_BUILD_TYPE=RelWithDebInfo \
      -DCMAKE_CXX_FLAGS="-fsanitize=fuzzer-no-link,address,undefined"
  fi
  cmake --build "$dir" -j "$(nproc)" --target fuzz_daemon_commands fuzz_helper_answer
}

# Runs each fuzz target for $1 seconds over a copy of its corpus in the tree.
vorlune_run_fuzzers() {
  local seconds=$1 target corpus work
  for target in fuzz_daemon_commands fuzz_helper_answer; do
    corpus=$vorlune_root/tests/fuzz/corpus/$target
    work=$(mktemp -d)
    cp -r "$corpus/." "$work/" 2>/dev/null || true
    echo "Fuzzing $target for ${seconds}s"
    "$vorlune_root/build-fuzz/tests/fuzz/$target" -max_total_time="$seconds" -print_final_stats=0 \
      -artifact_prefix="$vorlune_root/build-fuzz/$target-" "$work" "$corpus" 2>&1 | tail -n 3
    rm -rf "$work"
  done
}

vorlune_configure_and_build() {
  local dir=$1
  shift
  if [ ! -f "$dir/build.ninja" ]; then
    cmake -S "$vorlune_root" -B "$dir" -G Ninja "$@"
  fi
  cmake --build "$dir" -j "$(nproc)"
}
