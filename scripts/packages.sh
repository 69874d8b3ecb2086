# The Debian packages that build and test this project, and functions that install them. Sourced by
# the commands in the project's root folder.

build_packages=(
  g++ cmake ninja-build pkg-config
  libpng-dev libjpeg62-turbo-dev libhwy-dev libpoppler-glib-dev libcairo2-dev libpango1.0-dev libexpected-dev libcli11-dev libtomlplusplus-dev
  libcpp-httplib-dev libzint-dev libzxing-dev
  fonts-urw-base35 poppler-data # faces and encodings that PDF documents need not embed
  fonts-dejavu-core # faces of words, in many scripts
)
test_packages=(libgtest-dev iproute2 python3-jsonschema)
check_packages=(clang clang-tidy clang-format libclang-rt-14-dev man-db)
browser_packages=(chromium) # and Node.js with npm, see need_node
# To build for AArch64 and run the programs; name:architecture is another processor's package.
cross_packages=(g++-aarch64-linux-gnu qemu-user libpng-dev:arm64 libjpeg62-turbo-dev:arm64 libhwy-dev:arm64)

# Packages for AArch64 that cannot lie beside this machine's own: unpacked into a folder where
# cmake/aarch64-linux-gnu.cmake looks for them.
unpacked_cross_packages=(libzint-dev libzint2.11)
unpacked_cross_folder=build/aarch64-packages

bench_packages=(libbenchmark-dev python3 python3-numpy python3-pil) # and python3-pil is a peer
# What reads printed codes and letters, and what makes and judges the pages: scripts/print-quality.
quality_packages=(
  zbar-tools dmtx-utils tesseract-ocr tesseract-ocr-eng
  tesseract-ocr-ell tesseract-ocr-rus tesseract-ocr-heb tesseract-ocr-ara tesseract-ocr-hin
  fonts-lohit-deva # Devanagari, which fonts-dejavu-core has not
  python3-zxing-cpp libzxing-core-java openjdk-17-jdk-headless zint
  python3 python3-numpy python3-pil python3-reportlab poppler-utils mupdf-tools
)
# Tools for the same kind of work, to compare with.
peer_packages=(ghostscript graphicsmagick libvips-tools mupdf-tools netpbm poppler-utils)

is_installed() { # package[:architecture]
  local architecture
  architecture=$(dpkg --print-architecture)
  case "$1" in *:*) architecture=${1#*:} ;; esac
  dpkg-query --show --showformat='${Architecture} ${db:Status-Status}\n' "${1%:*}" 2>/dev/null |
    grep -qxE "(all|$architecture) installed"
}

as_root() {
  if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# The given packages that are not installed.
missing_of() {
  local package
  for package in "$@"; do
    is_installed "$package" || printf '%s\n' "$package"
  done
}

may_install() { # missing packages: else prints why not
  [ "$(id -u)" -eq 0 ] || command -v sudo >/dev/null || {
    echo "These packages are missing, and installing them needs root or sudo: $*" >&2
    return 1
  }
}

# Installs the missing ones of the given packages, and prints their names.
need_packages() {
  local missing
  mapfile -t missing < <(missing_of "$@")
  [ ${#missing[@]} -eq 0 ] && return 0
  may_install "${missing[@]}" || return 1
  echo "Installing with apt-get: ${missing[*]}"
  as_root apt-get update -qq &&
    as_root env DEBIAN_FRONTEND=noninteractive \
      apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# Unpacks the packages for AArch64 that are not installed. The architecture has been added.
need_unpacked_cross_packages() {
  [ -e "$unpacked_cross_folder/usr" ] && return 0
  local folder=$unpacked_cross_folder.new package
  rm -rf "$folder"
  mkdir -p "$folder"
  (cd "$folder" && apt-get download -qq "${unpacked_cross_packages[@]/%/:arm64}") || return 1
  for package in "$folder"/*.deb; do dpkg --extract "$package" "$folder" || return 1; done
  mv "$folder" "$unpacked_cross_folder"
}

# Installs the packages for AArch64. If the package sources have none, the architecture is removed
# again: with it every later `apt-get update` would fail.
need_cross_packages() {
  local missing added=no
  mapfile -t missing < <(missing_of "${cross_packages[@]}")
  [ ${#missing[@]} -eq 0 ] && { need_unpacked_cross_packages; return; }
  may_install "${missing[@]}" || return 1
  if ! dpkg --print-foreign-architectures | grep -qx arm64; then
    echo "Adding the architecture arm64 to the package sources"
    as_root dpkg --add-architecture arm64 && added=yes
  fi
  need_packages "${missing[@]}" && need_unpacked_cross_packages && return 0
  echo "The tests for AArch64 need these packages, and apt-get cannot install them here: ${missing[*]}" >&2
  [ $added = no ] || as_root dpkg --remove-architecture arm64 || true
  return 1
}

# Node.js and its package manager: the machine's own, else Debian's.
need_node() {
  command -v node >/dev/null && command -v npm >/dev/null || need_packages nodejs npm
}
