# Sourced by the commands beside it: finds the browser, and installs the library that drives it.
# $1 is the folder of the built programs; what is installed and made goes beside it.

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
bin=$(cd "${1:-$here/../../../../build/release/bin}" && pwd)
work=$bin/../browser

chromium=$(command -v chromium || command -v chromium-browser || true)
if [ -z "$chromium" ] || ! command -v node >/dev/null || ! command -v npm >/dev/null; then
  echo "Skipped: this needs Chromium, Node.js and npm."
  exit 77
fi
for program in tavio tavio-pdf-page tavio-printer; do
  [ -x "$bin/$program" ] || {
    echo "There is no $program in $bin; build it first." >&2
    exit 1
  }
done

mkdir -p "$work/pictures"
work=$(cd "$work" && pwd)
if ! cmp -s "$here/package-lock.json" "$work/package-lock.json" ||
  [ ! -e "$work/node_modules/.package-lock.json" ]; then
  cp "$here/package.json" "$here/package-lock.json" "$here/.npmrc" "$work/"
  (cd "$work" && npm ci --silent)
fi
export TAVIO_BIN=$bin TAVIO_WORK=$work TAVIO_CHROMIUM=$chromium
