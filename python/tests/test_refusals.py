"""Refusals: each kind with the words `oru check` uses, and nothing changed."""

import json

import pytest

import oru
from conftest import run_tool

# (path, value, the files layer's message)
REFUSALS = [
    ("Audio/Input/Gain", 150, "150 is above the maximum 100"),
    ("Audio/Input/Gain", -1, "-1 does not fit U32 (0 to 4294967295)"),
    ("Audio/Input/Gain", 2**64, "18446744073709551616 does not fit U32 (0 to 4294967295)"),
    ("Audio/Input/Gain", 2.5, "expected a whole number for U32, not 2.5"),
    ("Audio/Input/Gain", 72.0, "expected a whole number in plain digits for U32, not 72.0"),
    ("Audio/Input/Gain", 1e17, "1e+17 does not fit U32 (0 to 4294967295)"),
    ("Audio/Input/Gain", True, "expected a number, not a boolean"),
    ("Audio/Input/Gain", "72", "expected a number, not a string"),
    ("Audio/Input/Gain", None, "expected a number, not null"),
    ("Audio/Input/Gain", [72], "expected a number, not an array"),
    ("Audio/Input/Balance", -51, "-51 is below the minimum -50"),
    ("Video/FrameRate", 1e300, "1e+300 does not fit Float"),
    ("Video/Mode", "dusk", 'no entry is named "dusk"; allowed: auto, day, night'),
    ("Video/Mirror", 1, "expected true or false, not a number"),
    ("Video/Height", 500, "500 is not in the table; allowed: 480, 720, 1080"),
    ("Device/Name", "x" * 17, "the text is 17 bytes, above the maximum length 16 bytes"),
    ("Device/Language", "nl", '"nl" is not in the table; allowed: en, de, fr'),
    ("Audio/Nope", 1, "no setting has this path"),
]


@pytest.mark.parametrize("path, value, message", REFUSALS)
def test_each_refusal_names_the_setting_and_why_and_changes_nothing(device, path, value, message):
    before = device[path] if path in device else None
    with pytest.raises(oru.CheckError) as raised:
        device[path] = value
    problems = raised.value.problems
    assert [(p.path, p.message) for p in problems] == [(path, message)]
    assert problems[0].pointer == "/" + path.replace("~", "~0").replace("/", "~1")
    assert str(raised.value) == path + ": " + message
    assert isinstance(raised.value, ValueError)
    if path in device:
        assert device[path] == before
    assert device.events() == []
    # The dry run says the same and applies nothing either.
    assert [(p.path, p.message) for p in device.check({path: value})] == [(path, message)]


@pytest.mark.parametrize("path, value, message", REFUSALS)
def test_the_words_are_those_of_oru_check(tool, sample_files, tmp_path, path, value, message):
    values = tmp_path / "values.json"
    values.write_text(json.dumps({path: value}))
    done = run_tool(tool, "check", "--json", str(sample_files[0]), str(values))
    reasons = [each["reason"] for each in json.loads(done.stdout)["problems"]]
    assert reasons == [message]


def test_a_fixed_bool_takes_only_its_default(wide):
    problems = wide.check({"Wide/Locked": False})
    assert [(p.path, p.message) for p in problems] == [("Wide/Locked", "the setting is fixed at true")]
    wide["Wide/Locked"] = True
    assert wide["Wide/Locked"] is True


def test_a_value_with_many_wrong_parts_lists_each(wide):
    with pytest.raises(oru.CheckError) as raised:
        wide["Wide/Window"] = {"left": "a", "top": 0, "right": 2**40, "bottom": 0}
    problems = raised.value.problems
    assert [(p.pointer, p.message) for p in problems] == [
        ("/Wide~1Window/left", "expected a number, not a string"),
        ("/Wide~1Window/right", "1099511627776 does not fit S32 (-2147483648 to 2147483647)"),
    ]
    assert {p.path for p in problems} == {"Wide/Window"}
    assert str(raised.value).endswith("(and 1 more)")

