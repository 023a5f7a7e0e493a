#!/usr/bin/env bash
# Runs a command in a session of its own: its own message bus and its own runtime directory, which
# is where the accessibility bus puts its socket. Sessions that share that directory would find
# each other's programs.
set -euo pipefail

place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
export XDG_RUNTIME_DIR=$place XDG_CACHE_HOME=$place/cache
dbus-run-session -- "$@"
