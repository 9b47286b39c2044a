# Sourced by scripts/run and scripts/test: installs the Debian packages a step
# needs, only those that are missing, through sudo when not root.

vorlune_build_packages=(
  cmake ninja-build g++ pkg-config
  qt6-base-dev qt6-qpa-plugins
  fonts-dejavu-core fonts-symbola
)
vorlune_test_packages=(
  libgtest-dev libgmock-dev libbenchmark-dev clang-format python3
  qt6-svg-dev
  clang libclang-rt-14-dev
  xvfb xauth openbox tint2 xfce4-panel mate-panel tesseract-ocr xdotool imagemagick dbus dbus-bin x11-utils
  desktop-file-utils appstream dpkg-dev file procps iproute2 dunst conky-std
)
# Without a display, scripts/run shows Vorlune on a virtual one instead.
vorlune_demo_packages=(xvfb xauth openbox tint2 xdotool imagemagick python3)

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
    local dictionary=()
    [ -f "$vorlune_root/tests/fuzz/$target.dict" ] && dictionary=(-dict="$vorlune_root/tests/fuzz/$target.dict")
    "$vorlune_root/build-fuzz/tests/fuzz/$target" -max_total_time="$seconds" -print_final_stats=0 "${dictionary[@]}" \
      -artifact_prefix="$vorlune_root/build-fuzz/$target-" "$work" "$corpus" 2>&1 | tail -n 3
    rm -rf "$work"
  done
}

# vorlune_configure_and_build DIR [cmake -D options...] [-- targets...]
vorlune_configure_and_build() {
  local dir=$1
  shift
  local options=() targets=()
  while [ $# -gt 0 ] && [ "$1" != "--" ]; do options+=("$1"); shift; done
  [ "${1:-}" = "--" ] && shift
  targets=("$@")
  cmake -S "$vorlune_root" -B "$dir" -G Ninja "${options[@]}" >/dev/null
  if [ ${#targets[@]} -gt 0 ]; then
    cmake --build "$dir" -j "$(nproc)" --target "${targets[@]}"
  else
    cmake --build "$dir" -j "$(nproc)"
  fi
}

# The soak: sampling ticks back to back under AddressSanitizer and UndefinedBehaviorSanitizer,
# in a tree of its own that builds only the soak program and the helper. Arguments go to
# tests/soak/soak.py (default: 20,000 ticks, figures compared from tick 1,000).
vorlune_run_soak() {
  local dir=$vorlune_root/build-asan
  if [ ! -f "$dir/build.ninja" ]; then
    cmake -S "$vorlune_root" -B "$dir" -G Ninja -DBUILD_TESTING=ON -DVORLUNE_SANITIZE=ON >/dev/null
  fi
  cmake --build "$dir" -j "$(nproc)" --target vorlune_soak smc_helper
  VORLUNE_SOAK="$dir/tests/soak/vorlune_soak" VORLUNE_SMC_HELPER="$dir/SMCHelper/smc_helper" \
    python3 "$vorlune_root/tests/soak/soak.py" "$@"
}
