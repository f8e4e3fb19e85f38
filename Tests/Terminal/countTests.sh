#!/bin/bash
# Compares the program's figures with an independent count of the same home by jq: countTests.sh PROGRAM TEST.
# shellcheck disable=SC1091,SC2154 # the support file sets root, work, out and err
source "$(dirname "$(readlink -f "$0")")/programTestSupport.sh"

command -v jq >/dev/null || { echo "FAILED: jq is missing" && exit 1; }

# The 256 newest history files below $1, the last 512 KiB of each, as $2/1, $2/2, …
cut_tails() {
    mkdir -p "$2"
    [ -d "$1" ] || return 0
    local number=0
    while IFS= read -r -d '' entry; do
        local file=${entry#* }
        number=$((number + 1))
        if [ "$(stat -c %s "$file")" -gt 524288 ]; then
            tail -c 524288 "$file" | tail -n +2 >"$2/$number"
        else
            cp "$file" "$2/$number"
        fi
    done < <(find "$1" -type f -name '*.jsonl' -not -path "$1/.*" -not -path "$1/*/.*" -printf '%T@ %p\0' | sort -zrn | head -zn 256)
}

# Tokens by local day, as one JSON object, of the readings on standard input: {t: timestamp, n: tokens}. In two
# steps, because jq 1.6 wrongly applies the local summer time when it reads UTC.
by_day() {
    TZ=UTC jq -c '.t |= (sub("[.][0-9]+Z$"; "Z") | fromdateiso8601)' \
        | jq -n 'reduce inputs as $reading ({}; .[$reading.t | localtime | strftime("%Y-%m-%d")] += $reading.n)'
}

# Each message counts once per file, with its largest reading.
claude_days() {
    # shellcheck disable=SC2016 # jq's variables, not the shell's
    find "$1" -type f -print0 | xargs -0r jq -ncR '
        def total: [.input_tokens, .output_tokens, .cache_read_input_tokens, .cache_creation_input_tokens] | map(. // 0) | add;
        reduce (inputs | {file: input_filename, line: input_line_number, record: (fromjson? // null)}) as $each ({};
            $each.record as $record
            | if ($record | type) == "object" and $record.type == "assistant" and $record.message.usage != null then
                ($each.file + "/" + ($record.message.id // "line \($each.line)")) as $key
                | ($record.message.usage | total) as $tokens
                | if .[$key] == null or $tokens > .[$key].n then .[$key] = {t: $record.timestamp, n: $tokens} else . end
              else . end)
        | .[]' | by_day
}

codex_days() {
    find "$1" -type f -print0 | xargs -0r jq -cR '
        fromjson? | select(type == "object" and .type == "event_msg" and .payload.type == "token_count")
        | select(.payload.info.last_token_usage != null)
        | {t: .timestamp, n: (.payload.info.last_token_usage | .total_tokens // ((.input_tokens // 0) + (.output_tokens // 0)))}' \
        | by_day
}

# expect_independent_count HOME ZONE…: every figure of every day is the same as jq's
expect_independent_count() {
    local home=$1 provider days today noon
    shift
    cut_tails "$home/.claude/projects" "$work/tails/claude"
    cut_tails "$home/.codex/sessions" "$work/tails/codex"
    for zone in "$@"; do
        export TZ=$zone
        run --summary --json --no-quota --home "$home"
        expect_status 0
        expect_silence "$err"
        today=$(date -d "$(jq -r .lastUpdated "$out")" +%F)
        noon=$(date -u -d "$today 12:00" +%s) # in UTC, as jq's strftime
        for provider in claude codex; do
            days=$("${provider}_days" "$work/tails/$provider")
            jq -e --argjson days "$days" --argjson noon "$noon" --arg provider $provider '
                [range(364; -1; -1) | $noon - . * 86400 | strftime("%Y-%m-%d") | {date: ., tokens: ($days[.] // 0)}] as $expected
                | .states[] | select(.provider == $provider) | .summary
                | .last365Days == $expected and .last30Days == $expected[-30:]
                    and .todayTokens == $expected[-1].tokens and .totalTokens == ($expected[-30:] | map(.tokens) | add)
                    and .totalTokens > 0' "$out" >/dev/null || fail "$provider in $zone differs from jq: $days"
        done
    done
}

test_sampleHomeIsCountedAsByJq() {
    "$root/scripts/sample-home" "$work/sample" >/dev/null || fail "sample-home"
    expect_independent_count "$work/sample" Europe/Berlin America/St_Johns Pacific/Kiritimati UTC
}

test_handMadeHomeIsCountedAsByJq() {
    {
        claude_line "$(utc '1 hour ago')" 100 one
        claude_line "$(utc '1 hour ago')" 250 one
        claude_line "$(utc '2 hours ago')" 200 one
        claude_line "$(utc yesterday)" 31
        claude_line "$(utc yesterday)" 31
        claude_line "$(date -u -d yesterday +%Y-%m-%dT%H:%M:%S.5Z)" 1000 fraction
        echo 'no record at all'
        echo '{"timestamp":"2026-01-01T00:00:00Z","type":"user"}'
        claude_line "$(utc '40 days ago')" 5000 old
        claude_line "$(utc '500 days ago')" 70000 older
        claude_line "$(utc '3 days')" 900000 tomorrow
    } | claude_history a
    claude_line "$(utc '1 hour ago')" 250 one | claude_history b # the same message in another file counts again
    { codex_line "$(utc 'now')" 11 && codex_line "$(utc 'now')" 11 && codex_line "$(utc '29 days ago')" 13; } | codex_history a
    expect_independent_count "$work/home" Europe/Berlin Asia/Kathmandu Australia/Lord_Howe
}

test_onlyTheTailsOfLongFilesAreCounted() {
    local now padding
    now=$(utc '1 hour ago')
    padding=$(head -c 700 /dev/zero | tr '\0' x)
    for number in $(seq 1500); do
        echo "{\"timestamp\":\"$now\",\"type\":\"assistant\",\"message\":{\"id\":\"$number\",\"text\":\"$padding\",\"usage\":{\"output_tokens\":$number}}}"
    done | claude_history long
    codex_line "$now" 1 | codex_history short
    expect_independent_count "$work/home" Europe/Berlin UTC
    expect_json '.states[0].isPartialHistory and (.states[1].isPartialHistory | not)'
}

test_onlyTheNewestOfManyFilesAreCounted() {
    local now
    now=$(utc '1 hour ago')
    for number in $(seq 300); do
        claude_line "$now" $((1000 + number)) | claude_history "file$number"
        touch -d "@$((1700000000 + number * 60))" "$work/home/.claude/projects/demo/file$number.jsonl"
    done
    codex_line "$now" 1 | codex_history one
    expect_independent_count "$work/home" Europe/Berlin UTC
    expect_json '.states[0].isPartialHistory and .states[0].summary.totalTokens == ([range(1045; 1301)] | add)'
}

"test_$2"
echo "passed: $2"
