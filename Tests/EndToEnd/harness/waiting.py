"""Waiting for conditions. Nothing here asserts that something is fast: the timeouts end what hangs."""

import time

TIMEOUT = 20.0  # seconds


class Failure(Exception):
    """Why a test failed, in one line."""


def expect(condition, message):
    if not condition:
        raise Failure(message)


def expect_equal(actual, expected, what):
    expect(actual == expected, f"{what}: {actual!r} instead of {expected!r}")


def until(what, condition, timeout=TIMEOUT, interval=0.02):
    """Waits until `condition()` is truthy and returns its value. After `timeout` seconds it fails with `what`."""
    deadline = time.monotonic() + timeout
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > deadline:
            raise Failure(f"timed out after {timeout:g} s waiting until {what}")
        time.sleep(interval)


def stays(what, condition, seconds):
    """Fails if `condition()` becomes false within `seconds`: for things that must not happen."""
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        expect(condition(), f"did not last: {what}")
        time.sleep(0.05)


def settled(what, value, quiet=0.2, timeout=TIMEOUT):
    """Waits until `value()` is truthy and has been unchanged for `quiet` seconds; returns it."""
    last = [None, time.monotonic()]

    def is_quiet():
        current = value()
        if current != last[0]:
            last[:] = [current, time.monotonic()]
        return current if current and time.monotonic() - last[1] >= quiet else None

    return until(what, is_quiet, timeout, interval=0.03)
