"""What can go wrong at a door."""

from typing import TYPE_CHECKING, Any, Dict, Optional

if TYPE_CHECKING:
    from .door import Job


class DoorError(Exception):
    """The door did not do what it was asked for.

    Attributes:
      code: the code of the problem ("key_reused"); empty where there is none.
      status: the status of HTTP; 0 without an answer.
      problem: the problem as the door tells it (RFC 9457); empty where there is none.
      key: the key of the job that it is about; None without one.
      job: the job, as far as it is known.
    """

    def __init__(self, message: str, code: str = "", status: int = 0,
                 problem: Optional[Dict[str, Any]] = None, key: Optional[str] = None,
                 job: "Optional[Job]" = None) -> None:
        super().__init__(message)
        self.code, self.status, self.problem = code, status, problem or {}
        self.key, self.job = key, job


class RequestRefused(DoorError):
    """The door takes no such request. No job has come of it."""


class JobFailed(DoorError):
    """The job was rejected, has expired or was cancelled, for good: it has no effect. A new try
    takes a new key."""


class DoorAway(DoorError):
    """No door answered, or it takes nothing now, for as long as was waited: nothing was done."""


class OutcomeUnknown(DoorError):
    """What became of the job is not known yet: ask again with the same key, never with another one."""


class NeedsOperator(OutcomeUnknown):
    """Asking the device did not tell: an operator looks at it, and resolves the job."""
