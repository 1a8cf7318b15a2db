"""sparlane.Error, raised by every failed operation."""

from ._sparlane import ErrorCode


class Error(Exception):
    """A failed sparlane operation.

    ``code`` is the :class:`ErrorCode`; ``message`` (also ``str(error)``) is
    the library's message, e.g. "Failed to open file: cut.slb".
    """

    def __init__(self, code, message):
        super().__init__(code, message)
        self.code = ErrorCode(code)
        self.message = message

    def __str__(self):
        return self.message
