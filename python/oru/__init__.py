"""Device settings for test scripts.

A Directory holds a device's settings as the library does; values are set
with native Python types and checked by the library's files layer, so a
script meets the same refusals, in the same words, as ``oru check``, and
reads and writes the same serial records as the device.

    device = oru.Directory.load("device.json", values="values.json")
    device["Audio/Input/Gain"] = 80
"""

from ._oru import (
    ChangeSet,
    CheckError,
    Directory,
    Event,
    Item,
    Problem,
    __version__,
    decode,
)
from . import testing

__all__ = [
    "ChangeSet",
    "CheckError",
    "Directory",
    "Event",
    "Item",
    "Problem",
    "__version__",
    "decode",
    "testing",
]
