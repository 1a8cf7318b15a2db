"""Unpickling of the record classes (a Python function, so pickle can name it)."""

from ._sparlane import _record_from_bytes


def record_from_bytes(cls, state):
    """The record of class cls whose bytes are state."""
    return _record_from_bytes(cls, state)
