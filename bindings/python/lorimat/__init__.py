"""Lines of an old command language, run on a fiscal device or on a virtual register.

    import lorimat

    with lorimat.VirtualRegister() as register, lorimat.Translator(register) as t:
        t("VEND REP=1, PRE=1.20")
        t("CHIU TEND=CONTANTI")
        print(register.paper)

The libraries liblorimatrt, liblorimat-c and liblorimat-register-c are looked for in the folder that
LORIMAT_LIBRARY_DIR names, beside the package, in the library folder that it is installed under, and
where the system looks. A Door needs none of them: it speaks with lorimatd.
"""

from . import constants
from .client import Client
from .door import Document, Door, Event, Job, Outcome, new_key
from .door_errors import (DoorAway, DoorError, JobFailed, NeedsOperator, OutcomeUnknown,
                          RequestRefused)
from .errors import LorimatError, Refusal, TextError
from .register import State, Totals, VirtualRegister
from .translator import Answer, Translator, explain

__version__ = "3.1.11"  # that of the libraries

__all__ = [
    "Answer", "Client", "Document", "Door", "DoorAway", "DoorError", "Event", "Job", "JobFailed",
    "LorimatError", "NeedsOperator", "Outcome", "OutcomeUnknown", "Refusal", "RequestRefused", "State",
    "TextError", "Totals", "Translator", "VirtualRegister", "constants", "explain", "new_key",
]
