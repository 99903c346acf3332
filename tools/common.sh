# Sourced by the scripts of this folder, by ./run and by ./test: the paths that all of them use. The sourcing script
# sets `root` (the top of the tree) first.

build="$root/build"
stage="$build/stage"

# Each use has its own prefix, so that a demo and a test never interfere. The user's own prefix is never touched.
: "${WINEPREFIX:=$build/wineprefix}"
export WINEPREFIX

say() { printf '%s\n' "$*"; }
fail() {
    printf '%s\n' "$*" >&2
    exit 1
}
