# shellcheck shell=bash disable=SC2034
# Shared by the tests of the built program. Sourced by a script whose arguments are the program and the name of a test.
set -uo pipefail

program=$1
root=$(dirname "$(dirname "$(dirname "$(readlink -f "$0")")")")
work=$(mktemp -d "${TMPDIR:-/tmp}/tallyfox-program-XXXXXX")
trap 'rm -rf "$work"' EXIT

# No test sees the user's own home, configuration or codex.
mkdir -p "$work/account" "$work/home"
export HOME=$work/account
unset TZ TZDIR XDG_CONFIG_HOME NO_COLOR DISPLAY WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS
out=$work/out
err=$work/err
touch "$out" "$err"

fail() {
    echo "FAILED: $*"
    echo "--- standard output:"
    head -c 2000 "$out"
    echo "--- standard error:"
    head -c 2000 "$err"
    exit 1
}

skip() {
    echo "SKIPPED: $*"
    exit 77
}

# Runs the program and sets $status.
run() {
    "$program" "$@" >"$out" 2>"$err" </dev/null
    status=$?
}

expect_status() { [ "$status" -eq "$1" ] || fail "status $status instead of $1"; }
expect_silence() { [ ! -s "$1" ] || fail "$(basename "$1") is not empty"; }
expect_one_line() {
    [ "$(wc -l <"$1") $(tail -c 1 "$1" | od -An -tx1)" = "1  0a" ] || fail "not one line in $(basename "$1")"
}
expect_text() { grep -qF -- "$2" "$1" || fail "no '$2' in $(basename "$1")"; }
expect_no_text() { ! grep -qF -- "$2" "$1" || fail "'$2' in $(basename "$1")"; }
# expect_json FILTER: the output is one JSON document for which the filter is true
expect_json() { jq -es "length == 1 and (.[0] | $1)" "$out" >/dev/null || fail "not true of the document: $1"; }

# claude_line TIMESTAMP TOKENS [ID]
claude_line() {
    local id=${3+\"id\":\"$3\",}
    echo "{\"timestamp\":\"$1\",\"type\":\"assistant\",\"message\":{${id:-}\"usage\":{\"input_tokens\":$2}}}"
}
# codex_line TIMESTAMP TOKENS
codex_line() {
    printf '{"timestamp":"%s","type":"event_msg","payload":{"type":"token_count",' "$1"
    printf '"info":{"last_token_usage":{"total_tokens":%s}}}}\n' "$2"
}
# claude_history NAME < lines, codex_history NAME < lines: one history file below the home folder
claude_history() { mkdir -p "$work/home/.claude/projects/demo" && cat >"$work/home/.claude/projects/demo/$1.jsonl"; }
codex_history() { mkdir -p "$work/home/.codex/sessions/2026/11" && cat >"$work/home/.codex/sessions/2026/11/$1.jsonl"; }
# fake_codex < script: the account's `codex`
fake_codex() { mkdir -p "$HOME/.local/bin" && cat >"$HOME/.local/bin/codex" && chmod +x "$HOME/.local/bin/codex"; }
# utc WHEN: a time as `date -d` reads it, written as in a history
utc() { date -u -d "$1" +%Y-%m-%dT%H:%M:%SZ; }
