# Sourced by the scripts of this folder, by ./run and by ./test: the places everybody has to agree on.
# The sourcing script sets `root` (the top of the tree) first.

build="$root/build"
stage="$build/stage"

# A prefix of its own for each use, so that a program that is shown and a test that runs never meet. The user's own
# prefix is never touched.
: "${WINEPREFIX:=$build/wineprefix}"
export WINEPREFIX

say() { printf '%s\n' "$*"; }
fail() {
    printf '%s\n' "$*" >&2
    exit 1
}
