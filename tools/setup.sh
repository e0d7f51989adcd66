# Sourced by tools/demo and tools/check: installs what is missing on a Debian machine, as root or through sudo.
# Plain POSIX shell, so that a bare system can run it.

# What building and drawing need, and what the tests need besides.
BUILD_PACKAGES="g++ cmake ninja-build zlib1g-dev libbz2-dev libcurl4-openssl-dev libxml2-dev libpng-dev libx11-dev"
TEST_PACKAGES="tzdata proj-bin libgtest-dev nlohmann-json3-dev python3 clang-format ghostscript hp2xx imagemagick pngcheck giflib-tools xvfb xdotool"

say() { printf '%s\n' "$*"; }

die() {
  say "$*" >&2
  exit 1
}

# install_packages NAME...: those of the packages that are not there yet.
install_packages() {
  missing=""
  for package in "$@"; do
    status=$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null) || status=""
    case "$status" in
      *"ok installed"*) ;;
      *) missing="$missing $package" ;;
    esac
  done
  [ -n "$missing" ] || return 0
  command -v apt-get >/dev/null 2>&1 || die "Please install these packages (or their like):$missing"
  as_root=""
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null 2>&1 || die "Please install as root:$missing"
    as_root=sudo
  fi
  say "Installing:$missing"
  $as_root apt-get update -q || die "The list of packages could not be fetched"
  # shellcheck disable=SC2086  # a list of words
  $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends $missing ||
    die "These packages could not be installed:$missing"
}

# build_preset NAME TARGET...: configures a preset of CMakePresets.json and builds the targets.
build_preset() {
  preset=$1
  shift
  cmake --preset "$preset" >/dev/null || die "The preset $preset could not be configured"
  for target in "$@"; do
    cmake --build --preset "$preset" --target "$target" || die "$target ($preset) could not be built"
  done
}
