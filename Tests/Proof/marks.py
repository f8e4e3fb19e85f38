"""Writes marked message text into histories, and searches processes for the marks."""

import base64
import re

PLAIN = "Tidings-from-the-heath-" + "7F3A" * 4
CJK = "荒野からの便り狐の足跡" * 2
EMOJI = "🦊🌲🐾🌙🦉" * 2
MARKS = {"plain": PLAIN, "CJK": CJK, "emoji": EMOJI, "base64": base64.b64encode(PLAIN[:21].encode()).decode() * 2}
ENCODINGS = "utf-8 utf-16-le utf-16-be utf-32-le utf-32-be".split()


def escaped(text):
    """The text as nothing but JSON escapes."""
    units = text.encode("utf-16-be")
    return "".join("\\u%04x" % (units[place] << 8 | units[place + 1]) for place in range(0, len(units), 2))


def needles():
    found = {}
    for name, mark in MARKS.items():
        for encoding in ENCODINGS:
            found["%s in %s" % (name, encoding)] = mark.encode(encoding)
        found["%s, escaped" % name] = escaped(mark).encode()
    return found


def message_lines(now):
    """Lines with and without usage that contain all marks, plain and escaped."""
    marks = "".join(MARKS.values())
    lines = []
    for text in (marks, escaped(marks), marks * 40, escaped(marks) * 40):
        lines.append('{"timestamp":"%s","type":"user","message":{"content":"%s"}}' % (now, text))
        lines.append('{"timestamp":"%s","type":"assistant","message":{"content":[{"type":"text","text":"%s"}],'
                     '"usage":{"input_tokens":5}}}' % (now, text))
        lines.append('{"timestamp":"%s","type":"event_msg","payload":{"type":"token_count","info":{"note":"%s",'
                     '"last_token_usage":{"total_tokens":7}}}}' % (now, text))
    return "\n".join(lines) + "\n"


def memory_of(process):
    """Every readable byte of a process, except the kernel's own pages."""
    with open("/proc/%d/maps" % process, encoding="utf-8") as maps, open("/proc/%d/mem" % process, "rb", 0) as memory:
        for line in maps:
            found = re.match(r"([0-9a-f]+)-([0-9a-f]+) r\S+ \S+ \S+ \S+\s*(.*)", line)
            if not found or found[3] in ("[vvar]", "[vsyscall]", "[vvar_vclock]"):
                continue
            begin, end = int(found[1], 16), int(found[2], 16)
            memory.seek(begin)
            try:
                yield memory.read(end - begin)
            except OSError:
                pass


def marks_in_memory(process):
    found = set()
    size = 0
    for part in memory_of(process):
        size += len(part)
        found |= {name for name, bytes_ in needles().items() if bytes_ in part}
    if size < 1 << 20:
        raise SystemExit("the memory of the process could not be read")
    return found
