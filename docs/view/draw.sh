#!/bin/sh
# Draws the picture of the README: docs/view/draw.sh KESTOL-VIEW
set -eu
here=$(cd "$(dirname "$0")" && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
"$1" --solver skyline --svg "$scratch/portal" "$here/../../examples/portal/portal.dat"
mv "$scratch/portal_M.svg" "$here/portal-moments.svg"
