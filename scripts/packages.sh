# The Debian packages that this project is built and tested with, and how they get onto the machine.
# Sourced by the commands in the project's root folder.

build_packages=(
  g++ cmake ninja-build pkg-config
  libpng-dev libjpeg62-turbo-dev libhwy-dev libpoppler-glib-dev libcairo2-dev libcli11-dev libcpp-httplib-dev
  fonts-urw-base35 poppler-data # faces and encodings that PDF documents may use without bringing them
)
test_packages=(libgtest-dev iproute2)
check_packages=(clang clang-tidy clang-format libclang-rt-14-dev man-db)
browser_packages=(chromium) # and Node.js with npm, see need_node

is_installed() {
  [ "$(dpkg-query --show --showformat='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# Installs those of the given packages that are missing, and says so.
need_packages() {
  local missing=() package as_root=()
  for package in "$@"; do
    is_installed "$package" || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || {
      echo "These packages are missing, and installing them needs root or sudo: ${missing[*]}" >&2
      return 1
    }
    as_root=(sudo)
  fi
  echo "Installing with apt-get: ${missing[*]}"
  "${as_root[@]}" apt-get update -qq
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# Node.js and its package manager, from wherever the machine has them, else from Debian.
need_node() {
  command -v node >/dev/null && command -v npm >/dev/null || need_packages nodejs npm
}
