"""Texts as they travel: one byte a character in the device's code page."""

import codecs
from typing import Optional, Tuple, Union

from .errors import TextError

ENCODING = "cp1252"


def encoded(text: Union[str, bytes], what: str, encoding: str = ENCODING) -> bytes:
    """The bytes of a text; names what it cannot be sent for."""
    if isinstance(text, str):
        try:
            data = text.encode(encoding)
        except UnicodeEncodeError as error:
            character = text[error.start]
            raise TextError("%s: the character %r in place %d is not in the code page %s" %
                            (what, character, error.start + 1, encoding)) from None
    elif isinstance(text, (bytes, bytearray)):
        data = bytes(text)
    else:
        raise TypeError("%s has to be a str or bytes, not %s" % (what, type(text).__name__))
    if b"\0" in data:
        raise TextError("%s holds a NUL in place %d" % (what, data.index(b"\0") + 1))
    return data


def _as_code_page(error: UnicodeError) -> Tuple[str, int]:
    if not isinstance(error, UnicodeDecodeError):
        raise error
    byte = error.object[error.start:error.start + 1]
    try:
        return byte.decode(ENCODING), error.start + 1
    except UnicodeDecodeError:
        return byte.decode("latin-1"), error.start + 1


codecs.register_error("lorimat-code-page", _as_code_page)


def decoded(data: bytes, encoding: Optional[str] = None) -> str:
    """In a code page; without one UTF-8, and bytes that are none in the usual page: what a register
    prints is mixed."""
    if encoding is not None:
        return data.decode(encoding, "replace")
    return data.decode("utf-8", "lorimat-code-page")
