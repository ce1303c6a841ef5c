"""For what comes in its time: asked again and again, and not for ever."""

import time

# Far longer than anything takes on a machine that is at work with other things.
MOST_SECONDS = 240


def until(holds):
    """The first answer that is true; a failure, where none comes."""
    end = time.monotonic() + MOST_SECONDS
    while not (answer := holds()):
        if time.monotonic() > end:
            raise AssertionError("it does not come to hold")
        time.sleep(0.005)
    return answer
