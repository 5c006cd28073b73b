"""Files: descriptions and values read and written by the files layer, with
the program's texts."""

import json
import pathlib

import pytest

import oru
from conftest import run_tool


def test_loading_the_demo_values_refuses_the_one_the_program_refuses(tool, sample_files):
    description, values = sample_files
    with pytest.raises(oru.CheckError) as raised:
        oru.Directory.load(str(description), values=str(values))
    said = json.loads(run_tool(tool, "check", "--json", str(description), str(values)).stdout)
    assert [(p.path, p.pointer, p.message) for p in raised.value.problems] == [
        (p["path"], p["pointer"], p["reason"]) for p in said["problems"]]
    assert ("Video/Brightness", "130 is above the maximum 100") in [
        (p.path, p.message) for p in raised.value.problems]


def test_describe_and_save_values_write_what_the_program_writes(tool, sample_files, device,
                                                                 tmp_path):
    description, _ = sample_files
    assert device.describe().strip() == description.read_text().strip()
    saved = tmp_path / "saved.json"
    device.save_values(saved)
    assert saved.read_text() == device.values_json()
    assert not (tmp_path / "saved.json.tmp").exists()
    again = oru.Directory.load(pathlib.Path(description), values=saved)
    assert {p: again[p] for p in again} == {p: device[p] for p in device}
    assert again.events() == []
    assert run_tool(tool, "check", str(description), str(saved)).returncode == 0


def test_load_values_is_all_or_nothing(device, tmp_path):
    values = tmp_path / "values.json"
    values.write_text(json.dumps({"Audio/Input/Gain": 1, "Video/Mode": "dusk"}))
    with pytest.raises(oru.CheckError):
        device.load_values(values)
    assert device["Audio/Input/Gain"] == 72
    values.write_text(json.dumps({"Audio/Input/Gain": 1}))
    device.load_values(str(values))
    assert device["Audio/Input/Gain"] == 1


@pytest.mark.parametrize(
    "description, pointer, path, message",
    [
        ('{"settings": [{"path": "A/B", "type": "Numeric:U8", "min": 5, "max": 1}]}',
         "/settings/0/max", "A/B", "max is below min"),
        ('{"settings": [{"path": "A/B", "type": "Numeric:U31"}]}',
         "/settings/0/type", "A/B", "unknown type Numeric:U31; did you mean Numeric:U32?"),
        ('{"settings": [', "", "", None),
    ],
)
def test_a_wrong_description_is_refused_with_its_pointer(description, pointer, path, message):
    with pytest.raises(oru.CheckError) as raised:
        oru.Directory.from_json(description)
    problem = raised.value.problems[0]
    assert (problem.pointer, problem.path) == (pointer, path)
    if message is None:
        assert problem.message.startswith("malformed JSON at line 1, column 15 (byte 15): ")
    else:
        assert problem.message == message


def test_files_that_cannot_be_read_are_os_errors(sample_files, tmp_path, device):
    with pytest.raises(FileNotFoundError):
        oru.Directory.load(tmp_path / "missing.json")
    with pytest.raises(FileNotFoundError):
        oru.Directory.load(sample_files[0], values=tmp_path / "missing.json")
    with pytest.raises(OSError):
        device.save_values(tmp_path / "no-such-folder" / "values.json")
