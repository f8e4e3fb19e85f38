"""Waiting for conditions. Nothing here asserts that something is fast: the limits end what hangs."""

import time

HANG_LIMIT = 20.0  # seconds


class Failure(Exception):
    """Why a test failed, in one line for people."""


def expect(condition, message):
    if not condition:
        raise Failure(message)


def expect_equal(actual, expected, what):
    expect(actual == expected, f"{what}: {actual!r} instead of {expected!r}")


def until(what, condition, limit=HANG_LIMIT, interval=0.01):
    """Waits until `condition()` is truthy and returns that; fails, saying `what` never came, after `limit` seconds."""
    deadline = time.monotonic() + limit
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise Failure(f"waited {limit:g} s in vain: {what}")
        time.sleep(interval)


def stays(what, condition, seconds):
    """Fails when `condition()` becomes false within `seconds`: for things that must not happen."""
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        expect(condition(), f"did not last: {what}")
        time.sleep(0.02)


def settled(what, value, quiet=0.2, limit=HANG_LIMIT):
    """Waits until `value()` is truthy and has been the same for `quiet` seconds; returns it."""
    last = [None, time.monotonic()]

    def is_quiet():
        current = value()
        if current != last[0]:
            last[:] = [current, time.monotonic()]
        return current if current and time.monotonic() - last[1] >= quiet else None

    return until(what, is_quiet, limit, interval=0.03)
