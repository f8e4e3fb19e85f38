#!/bin/bash
# Tests the built program from outside: programTests.sh PROGRAM TEST. Each function test_… is a test.
# shellcheck disable=SC1091,SC2154 # the support file sets root, work, out and err
source "$(dirname "$(readlink -f "$0")")/programTestSupport.sh"

test_helpAndVersionNeedNoEnvironment() {
    for option in --help --version; do
        env -i "$program" $option >"$out" 2>"$err"
        status=$?
        expect_status 0
        expect_silence "$err"
        expect_text "$out" tallyfox
    done
    expect_one_line "$out"
    run --help --version
    expect_text "$out" "Usage:"
}

test_helpNamesEveryOptionWithin80Columns() {
    run --help
    for option in --summary --json --home --no-quota --help --version; do
        expect_text "$out" "  $option"
    done
    [ "$(wc -L <"$out")" -le 80 ] || fail "a line of the help is too long"
}

test_wrongUsageIsStatus2AndOneLine() {
    local -a table=(
        "--bogus"
        "--summary --bogus"
        "--help --bogus"
        "--summary extra"
        "extra"
        "-"
        "--"
        "-h"
        "--sum"
        "--summary=yes"
        "--json"
        "--toggle --summary"
        "--toggle --no-quota"
        "--json --no-quota"
        "--toggle --home /"
        "--home=/ --toggle"
        "--summary --home"
        "--summary --json=1"
        "--toggle=1"
        "--settings --summary"
    )
    for arguments in "${table[@]}"; do
        # shellcheck disable=SC2086 # the words of the row are the arguments
        run $arguments
        [ "$status" -eq 2 ] || fail "status $status for '$arguments'"
        expect_silence "$out"
        expect_one_line "$err"
        expect_text "$err" "tallyfox: "
    done
}

test_homeThatIsNotAFolderIsStatus2() {
    touch "$work/file"
    mkfifo "$work/fifo"
    for home in "$work/missing" "$work/file" "$work/file/below" "$work/fifo" "" /dev/null; do
        run --summary --no-quota --home "$home"
        expect_status 2
        expect_silence "$out"
        expect_one_line "$err"
    done
}

test_controlCharactersOfArgumentsNeverReachTheTerminal() {
    run --summary --home $'/missing/\e[31mred\nline\x07\x9b\xff'
    expect_status 2
    expect_one_line "$err"
    ! LC_ALL=C grep -q $'[\x01-\x08\x0b-\x1f\x7f]' "$err" || fail "a control character in the message"
    run $'--\e[2J\n\xff'
    expect_status 2
    expect_one_line "$err"
    ! LC_ALL=C grep -q $'[\x01-\x08\x0b-\x1f\x7f]' "$err" || fail "a control character in the message"
}

test_homeMayHaveAnyName() {
    local odd=$work/$'line\nfeed \xff ümlaut --json'
    mkdir -p "$odd/.claude/projects/demo"
    claude_line "$(utc now)" 4711 >"$odd/.claude/projects/demo/a.jsonl"
    run --summary --no-quota --home "$odd"
    expect_status 0
    expect_text "$out" "4,711 tokens"
    (cd "$work" && "$program" --summary --no-quota "--home=./${odd##*/}" >"$out" 2>"$err") || fail "a relative name"
    expect_text "$out" "4,711 tokens"
    ln -s "$odd" "$work/link"
    run --summary --no-quota --home /nonexistent --home "$work/link"
    expect_status 0
}

test_summaryWithoutAGrantIsPrintedWithStatus3() {
    run --summary --no-quota
    expect_status 3
    expect_one_line "$err"
    expect_text "$out" "Permission · Home folder access required"
    run --summary --json --no-quota
    expect_status 3
    expect_json '.hasHomeAccess == false and ([.states[].health] | unique) == ["Permission"]
        and ([.states[].updatedAt] | unique) == [null] and .lastUpdated != null and .combinedPercent == null'
    [ -z "$(find "$HOME" -type f)" ] || fail "something was stored"
}

test_outputThatCannotBeWrittenIsStatus1() {
    for arguments in "--help" "--version" "--summary --no-quota --home $work/home" "--summary --json --no-quota"; do
        # shellcheck disable=SC2086
        "$program" $arguments >/dev/full 2>"$err"
        status=$?
        expect_status 1
        expect_one_line "$err"
        expect_text "$err" "No space left on device"
        # shellcheck disable=SC2086
        "$program" $arguments >&- 2>"$err"
        status=$?
        expect_status 1
        expect_one_line "$err"
    done
}

test_programRunsWithClosedStandardStreams() {
    "$program" --summary --no-quota --home "$work/home" <&- >"$out" 2>&-
    status=$?
    expect_status 0
    expect_text "$out" Claude
    "$program" --bogus <&- >&- 2>&-
    status=$?
    expect_status 2
}

test_brokenPipeEndsQuietly() {
    for disposition in default ignored; do
        # The delay makes sure that the reader is gone before the program writes.
        {
            sleep 0.3
            [ $disposition = default ] || trap '' PIPE
            "$program" --summary --json --no-quota --home "$work/home" 2>"$err"
            echo $? >"$work/status"
        } | true
        status=$(cat "$work/status")
        expect_status 0
        expect_silence "$err"
    done
    "$program" --summary --no-quota --home "$work/home" 2>"$err" | head -c1 >"$out"
    [ "${PIPESTATUS[0]}" -eq 0 ] || fail "status ${PIPESTATUS[0]} with a reader of one byte"
    expect_silence "$err"
}

test_slowReaderGetsEverything() {
    "$program" --summary --json --no-quota --home "$work/home" 2>"$err" | { sleep 0.5 && cat >"$out"; }
    expect_json '.states | length == 2'
}

# on_terminal [NAME=VALUE…]: the summary on a terminal, with these variables
on_terminal() {
    env "$@" script -qec "'$program' --summary --no-quota --home '$work/home'" "$work/typescript" </dev/null >"$out" 2>"$err"
    status=$?
    expect_status 0
    expect_text "$out" Claude
}

test_onlyTerminalsThatSupportColourGetIt() {
    command -v script >/dev/null || fail "script (Debian package bsdutils) is missing"
    local escape=$'\e['
    on_terminal TERM=xterm-256color
    expect_text "$out" "$escape"
    on_terminal TERM=xterm NO_COLOR=
    expect_text "$out" "$escape"
    on_terminal TERM=xterm NO_COLOR=1
    expect_no_text "$out" "$escape"
    on_terminal TERM=dumb
    expect_no_text "$out" "$escape"
    on_terminal -u TERM
    expect_no_text "$out" "$escape"
    TERM=xterm run --summary --no-quota --home "$work/home"
    expect_no_text "$out" "$escape"
}

test_warningsOfTheToolkitAreNotPrinted() {
    for locale in C POSIX xx_YY.UTF-8; do
        env LC_ALL=$locale "$program" --summary --no-quota --home "$work/home" >"$out" 2>"$err"
        status=$?
        expect_status 0
        expect_silence "$err"
    done
    LC_ALL=C run --summary --json --no-quota --home "$work/home"
    expect_silence "$err"
    expect_json '.schemaVersion == 1'
}

test_timeZoneDecidesTheDayOfASample() {
    local noon
    noon=$(date -u +%Y-%m-%dT10:30:00Z -d yesterday) # 23:30 in Pago Pago the day before, 00:30 in Kiritimati
    claude_line "$noon" 99 | claude_history a
    local day
    for zone in Pacific/Kiritimati Pacific/Pago_Pago UTC :Europe/Berlin XYZ-13:30; do
        day=$(TZ=${zone#:} date -d "$noon" +%F)
        TZ=$zone run --summary --json --no-quota --home "$work/home"
        expect_json "[.states[0].summary.last365Days[] | select(.tokens != 0)] == [{date: \"$day\", tokens: 99}]"
        expect_json ".timeZone == \"${zone#:}\""
    done
    [ "$(TZ=Pacific/Kiritimati date -d "$noon" +%F)" != "$(TZ=Pacific/Pago_Pago date -d "$noon" +%F)" ] || fail "the zones of this test are on the same day"
}

test_unusableTimeZoneMeansUtc() {
    for zone in "" : Atlantis/Capital ../../../etc/passwd /etc/passwd "$(head -c 5000 /dev/zero | tr '\0' A)"; do
        TZ=$zone run --summary --json --no-quota --home "$work/home"
        expect_status 0
        expect_json '.timeZone == "UTC"'
    done
}

test_jsonHasTheDocumentedShape() {
    claude_line "$(utc now)" 12 | claude_history a
    TZ=UTC run --summary --json --no-quota --home "$work/home"
    expect_status 0
    expect_silence "$err"
    expect_one_line "$out"
    expect_json 'keys_unsorted == ["schemaVersion", "timeZone", "hasHomeAccess", "lastUpdated", "combinedPercent", "states"]
        and (.lastUpdated | test("^[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}[.][0-9]{3}Z$"))
        and [.states[].provider] == ["claude", "codex"]
        and (.states | all(keys_unsorted == ["provider", "health", "detail", "updatedAt", "isPartialHistory",
            "isQuotaStale", "quota", "summary"]))
        and (.states | all(.summary | keys_unsorted == ["totalTokens", "todayTokens", "last30Days", "last365Days"]))
        and (.states | all(.summary | (.last30Days | length) == 30 and (.last365Days | length) == 365
            and .last30Days == .last365Days[-30:]))
        and (.states | all(.summary.last365Days | [.[].date] | . == (sort | unique)))'
    expect_json "(.states[0].summary.last365Days[-1].date == \"$(date -u +%F)\") or (now % 86400 < 60)"
}

test_summaryNeedsNeitherDisplayNorBus() {
    env -i "$program" --summary --no-quota --home "$work/home" >"$out" 2>"$err"
    status=$?
    expect_status 0
    expect_silence "$err"
}

test_sumBeyond64BitsIsStatus1() {
    { claude_line "$(utc now)" 9223372036854775807 && claude_line "$(utc now)" 1; } | claude_history a
    run --summary --no-quota --home "$work/home"
    expect_status 1
    expect_silence "$out"
    expect_one_line "$err"
}

test_tokenCountsBeyondDoublePrecisionAreExact() {
    claude_line "$(utc now)" 9007199254740993 | claude_history a
    run --summary --json --no-quota --home "$work/home"
    expect_text "$out" '"totalTokens":9007199254740993,'
    run --summary --no-quota --home "$work/home"
    expect_text "$out" "9,007,199,254,740,993 tokens"
}

test_historyContentIsNeverPrinted() {
    {
        claude_line "$(utc now)" 5
        echo '{"timestamp":"x","type":"user","message":{"content":"SECRET"}} broken SECRET'
        echo "{\"timestamp\":\"$(utc now)\",\"type\":\"assistant\",\"message\":{\"id\":\"SECRET\",\"model\":\"SECRET\",\"content\":\"SECRET\",\"usage\":{\"input_tokens\":1}}}"
    } | claude_history SECRET
    for options in "--summary" "--summary --json"; do
        # shellcheck disable=SC2086
        run $options --no-quota --home "$work/home"
        expect_status 0
        expect_no_text "$out" SECRET
        expect_silence "$err"
    done
}

answering_codex() {
    fake_codex <<'SCRIPT'
#!/bin/sh
read -r initialize && read -r initialized && read -r request || exit 1
echo '{"id":0,"result":{}}'
echo "{\"id\":2,\"result\":{\"rateLimits\":{\"primary\":{\"usedPercent\":42.5,\"windowDurationMins\":300,\"resetsAt\":4102444800}}}}"
read -r end
SCRIPT
}

test_quotaOfTheUsersCodexIsShown() {
    answering_codex
    run --summary --json --home "$work/home"
    expect_status 0
    expect_json '.combinedPercent == 43 and .states[1].health == "Connected"
        and .states[1].quota == {provider: "codex", primary: {usedPercent: 42.5, resetsAt: "2100-01-01T00:00:00.000Z",
            windowMinutes: 300}, secondary: null, confidence: "exact"}'
    expect_text "$out" '"primary":{"usedPercent":42.5,"resetsAt":"2100-01-01T00:00:00.000Z","windowMinutes":300},"secondary":null,"confidence":"exact"}'
    run --summary --home "$work/home"
    expect_text "$out" "Quota 5 h"
    expect_text "$out" "43%"
    run --summary --no-quota --json --home "$work/home"
    expect_json '.combinedPercent == null and .states[1].quota == null'
}

test_quotaIsShownWithoutAGrant() {
    answering_codex
    run --summary --json
    expect_status 3
    expect_json '.combinedPercent == 43 and .states[1].health == "Connected"'
}

silent_codex() {
    fake_codex <<SCRIPT
#!/bin/bash
trap '' TERM HUP
echo \$\$ >"$work/child"
while :; do sleep 0.1; done
SCRIPT
}

# expect_no_child: the silent codex ends within 5 seconds
expect_no_child() {
    local child
    child=$(cat "$work/child") || fail "the codex was never started"
    for _ in $(seq 50); do
        [ -e "/proc/$child" ] || return 0
        sleep 0.1
    done
    kill -KILL -- "-$child"
    fail "the codex is still running"
}

test_silentCodexIsEndedAfterTenSeconds() {
    silent_codex
    codex_line "$(utc now)" 7 | codex_history a
    local begin=$SECONDS
    run --summary --home "$work/home"
    expect_status 0
    expect_silence "$err"
    expect_text "$out" "Local history"
    [ $((SECONDS - begin)) -ge 9 ] || fail "gave up early"
    expect_no_child
}

test_signalEndsTheProgramAndItsCodex() {
    silent_codex
    for signal in TERM INT HUP; do
        rm -f "$work/child"
        # A shell without job control makes its background jobs ignore SIGINT.
        perl -e '$SIG{INT} = "DEFAULT"; exec @ARGV' "$program" --summary --home "$work/home" >"$out" 2>"$err" &
        local started=$!
        for _ in $(seq 100); do
            [ -s "$work/child" ] && break
            sleep 0.1
        done
        kill -s $signal $started
        wait $started 2>/dev/null
        status=$?
        expect_status $((128 + $(kill -l $signal)))
        expect_silence "$out"
        expect_no_child
    done
}

test_summaryOpensNoNetworkAndWritesNothing() {
    command -v strace >/dev/null || skip "strace is missing"
    strace -o /dev/null true 2>"$err" || skip "strace is not allowed to trace processes on this machine"
    { claude_line "$(utc now)" 5 && claude_line "$(utc yesterday)" 6; } | claude_history a
    codex_line "$(utc now)" 7 | codex_history a
    find "$work/home" -printf '%p %s %T@ %m\n' | sort >"$work/before"
    ASAN_OPTIONS=detect_leaks=0 strace -f -o "$work/trace" -e trace=%network,%file \
        "$program" --summary --no-quota --home "$work/home" >"$out" 2>"$err"
    status=$?
    expect_status 0
    grep -q "jsonl" "$work/trace" || fail "the trace does not show the history files"
    ! grep -E 'socket\(' "$work/trace" | grep -v AF_UNIX || fail "a non-local socket"
    ! grep -F "$work/home" "$work/trace" | grep -E 'O_WRONLY|O_RDWR|O_CREAT|O_TRUNC|O_APPEND' || fail "opened for writing"
    ! grep -F "$work/home" "$work/trace" | grep -E ' (unlink|rename|mkdir|rmdir|link|symlink|chmod|chown|utime|truncate|mknod|setxattr)[a-z0-9]*\(' \
        || fail "something below the home folder was changed"
    ! grep -E 'execve\(' "$work/trace" | grep codex || fail "codex was started"
    find "$work/home" -printf '%p %s %T@ %m\n' | sort | cmp -s - "$work/before" || fail "the home folder changed"
}

"test_$2"
echo "passed: $2"
