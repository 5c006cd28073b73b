"""Shared devices for the module's tests.

The sample device is the one the oru program describes (`oru describe`,
`oru demo --values`), so that these tests and the program's own speak of the
same settings. WIDE is a device of this file with the families and element
types the sample leaves out, at the limits of their types. Its float bounds
are whole and not negative: the wire keeps floats as truncated unsigned
integers, and the check refuses a value its record would not give back.
"""

import json
import os
import subprocess

import pytest

import oru

WIDE = {
    "settings": [
        {"path": "Wide/U8", "type": "Numeric:U8", "min": 0, "max": 255, "default": 7},
        {"path": "Wide/S8", "type": "Numeric:S8", "min": -128, "max": 127, "default": 0},
        {"path": "Wide/U64", "type": "Numeric:U64", "min": 0,
         "max": 18446744073709551615, "default": 0},
        {"path": "Wide/S64", "type": "Numeric:S64", "min": -9223372036854775808,
         "max": 9223372036854775807, "default": 0},
        {"path": "Wide/Count", "type": "Numeric:U32", "min": 10, "max": 20, "default": 15},
        {"path": "Wide/Ratio", "type": "Numeric:Float", "min": 0, "max": 3, "default": 1},
        {"path": "Wide/Gain", "type": "Numeric:Double", "min": 0, "max": 1000, "default": 0},
        {"path": "Wide/Rate", "type": "NumericSparse:Float", "table": [12, 25, 50], "default": 25},
        {"path": "Wide/Level", "type": "Enum", "localized": False, "default": "low",
         "table": [{"name": "low", "value": 0, "disabled": False},
                   {"name": "mid", "value": 1, "disabled": True},
                   {"name": "high", "value": 7, "disabled": False}]},
        {"path": "Wide/Locked", "type": "Bool", "fixed": True, "default": True},
        {"path": "Wide/Label", "type": "String", "maxLength": 4, "default": "ab"},
        {"path": "Wide/Codec", "type": "StringSparse", "table": ["pcm", "aac"], "default": "aac"},
        {"path": "Wide/Flags", "type": "BoolArray", "minSize": 1, "maxSize": 3, "default": [True]},
        {"path": "Wide/Spot", "type": "Coordinate:Float",
         "x": {"min": 0, "max": 1, "default": 0}, "y": {"min": 0, "max": 3, "default": 1}},
        {"path": "Wide/Window", "type": "Rectangle:S32",
         "topLeft": {"x": {"min": -10, "max": 10, "default": 0}, "y": {"min": -10, "max": 10, "default": 0}},
         "bottomRight": {"x": {"min": 0, "max": 100, "default": 50},
                         "y": {"min": 0, "max": 100, "default": 50}}},
        {"path": "Wide/Band", "type": "NumericArray:U16", "minSize": 2, "maxSize": 3,
         "default": [1, 2]},
        {"path": "Wide/Pair", "type": "Composite", "children": [
            {"type": "Numeric:Float", "name": "Scale", "min": 0, "max": 4, "default": 1},
            {"type": "Numeric:U16", "name": "Port", "min": 1, "max": 65535, "default": 80}]},
    ]
}


def pytest_configure(config):
    config.addinivalue_line("markers", "tool: needs the oru program (ORU_TOOL)")


@pytest.fixture(scope="session")
def tool():
    path = os.environ.get("ORU_TOOL")
    if not path or not os.path.exists(path):
        pytest.skip("the oru program is not built (ORU_TOOL is not set)")
    return path


def run_tool(tool, *args):
    done = subprocess.run([tool, *args], capture_output=True, text=True, check=False)
    return done


@pytest.fixture(scope="session")
def sample_files(tool, tmp_path_factory):
    """The sample device's description and values files, as the program writes them."""
    folder = tmp_path_factory.mktemp("sample")
    description = folder / "device.json"
    values = folder / "values.json"
    description.write_text(run_tool(tool, "describe").stdout)
    values.write_text(run_tool(tool, "demo", "--values").stdout)
    return description, values


@pytest.fixture(scope="session")
def sample_values(tool, sample_files):
    """The sample's values that its settings take: those `oru check` refuses left out."""
    values = json.loads(sample_files[1].read_text())
    said = run_tool(tool, "check", "--json", str(sample_files[0]), str(sample_files[1])).stdout
    for problem in json.loads(said)["problems"]:
        values.pop(problem["path"], None)
    assert "Audio/Input/Gain" in values and "Video/Brightness" not in values
    return values


@pytest.fixture
def device(sample_files, sample_values):
    """A fresh sample device with its values, its events pulled."""
    made = oru.Directory.load(sample_files[0], values=sample_values)
    assert made.events() == []
    return made


@pytest.fixture
def wide():
    made = oru.Directory.from_json(json.dumps(WIDE))
    values = {setting["path"]: setting["default"] for setting in WIDE["settings"]
              if "default" in setting}
    values.update({"Wide/Spot": {"x": 0, "y": 1}, "Wide/Pair": [1, 80],
                   "Wide/Window": {"left": 0, "top": 0, "right": 50, "bottom": 50}})
    made.update(values)
    made.events()
    return made


def sample_paths():
    """The sample's paths for parametrizing, known without the program."""
    return [
        "Audio/Output", "Video/FrameRate", "Video/Brightness", "Video/Mode",
        "Video/OverlayColour", "Video/Mirror", "Video/Height", "Video/Origin", "Video/Crop",
        "Video/PrivacyMasks", "Device/Name", "Device/Tags", "Device/Language",
        "Network/ConfigService", "Network/Gateway", "Network/Syslog", "Network/Streams",
        "Audio/Input/Gain", "Audio/Input/Balance", "Audio/Input/Equalizer", "Audio/Input/Mute",
    ]


def wide_paths():
    return [setting["path"] for setting in WIDE["settings"]]
