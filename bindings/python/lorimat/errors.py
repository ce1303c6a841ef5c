"""What can go wrong."""

from typing import Optional


class LorimatError(Exception):
    """A line was not run, or the library, the register or a device could not do something.

    Attributes:
      code: the result code of a line, as the library answers it; None where no line was run.
      text: the answer of the library ("ERROR 1/1 : ..."); empty where no line was run.
      explanation: what the code means and what causes it; empty where no line was run.
      line: the line; None where no line was run.

    When a method of a Client raised, that exception is the cause (``__cause__``).
    """

    def __init__(self, message: str, code: Optional[int] = None, text: str = "",
                 explanation: str = "", line: Optional[str] = None) -> None:
        super().__init__(message)
        self.code = code
        self.text = text
        self.explanation = explanation
        self.line = line

    def __reduce__(self):
        return (type(self), (self.args[0], self.code, self.text, self.explanation, self.line))


class TextError(LorimatError, ValueError):
    """A text holds a NUL or a character that the device's code page has not; nothing was sent."""


class Refusal(Exception):
    """Raised in a method of a Client to answer with a result code (lorimat.constants.RTF_...)."""

    def __init__(self, code: int) -> None:
        super().__init__(code)
        self.code = code
