"""Values in and out: every family's round trip through set, read, record and
decode, and the Python types that come back."""


import pytest

import oru
from conftest import sample_paths, wide_paths


def test_the_parametrized_paths_are_the_sample_device_s(device):
    assert list(device) == sample_paths()
    assert len(device) == len(sample_paths())


def same_shape(a, b):
    """The same Python types all the way down."""
    if isinstance(a, list) and isinstance(b, list):
        return len(a) == len(b) and all(same_shape(x, y) for x, y in zip(a, b))
    if isinstance(a, dict) and isinstance(b, dict):
        return a.keys() == b.keys() and all(same_shape(a[k], b[k]) for k in a)
    return type(a) is type(b)


def round_trip(device, path, value):
    """Sets value, then checks that what reads back travels unchanged."""
    device[path] = value
    back = device[path]
    assert back == value
    assert type(back) is type(value) or isinstance(value, (list, dict))
    # What a script read, it can set again, and nothing changes.
    device[path] = back
    assert device[path] == back
    info = device.info(path)
    record = device.record(path)
    # The check takes only values their record gives back.
    [(where, family, decoded)] = oru.decode(record, device)
    assert (where, family) == (path, info["family"])
    assert decoded == back and same_shape(decoded, back)
    ids = oru.decode(record)
    assert [(each[0], each[1]) for each in ids] == [(info["id"], info["family"])]
    item = device.item(path)
    assert item.id == info["id"] and item.family == info["family"]
    assert item.record() == record


@pytest.mark.parametrize("path", sample_paths())
def test_every_sample_family_round_trips_each_value_that_passes(device, path):
    for edge in oru.testing.edges(device.info(path)).passing:
        round_trip(device, path, edge.value)


@pytest.mark.parametrize("path", wide_paths())
def test_every_wide_family_round_trips_each_value_that_passes(wide, path):
    for edge in oru.testing.edges(wide.info(path)).passing:
        round_trip(wide, path, edge.value)


@pytest.mark.parametrize(
    "path, value, back",
    [
        # 64-bit integers are exact at both ends of their types.
        ("Wide/U64", 18446744073709551615, 18446744073709551615),
        ("Wide/S64", -9223372036854775808, -9223372036854775808),
        ("Wide/U64", 9007199254740993, 9007199254740993),
        # A float setting answers floats, whole ones too.
        ("Wide/Ratio", 0, 0.0),
        ("Wide/Ratio", 3, 3.0),
        ("Wide/Gain", 1000, 1000.0),
        ("Wide/Level", "high", "high"),
        ("Wide/Level", 7, "high"),
        ("Wide/Band", (0, 1), [0, 1]),
        ("Wide/Pair", [2, 443], [2.0, 443]),
        ("Wide/Spot", [1, 2], {"x": 1.0, "y": 2.0}),
    ],
)
def test_values_come_back_in_their_own_python_types(wide, path, value, back):
    wide[path] = value
    got = wide[path]
    assert got == back
    assert repr(got) == repr(back)


def test_the_composite_s_parts_keep_their_own_types(wide):
    wide["Wide/Pair"] = [3, 8080]
    scale, port = wide["Wide/Pair"]
    assert type(scale) is float and type(port) is int
    assert [type(v) for v in wide.info("Wide/Pair")["children"][0].values()
            if isinstance(v, (int, float)) and not isinstance(v, bool)]


def test_a_setting_without_a_value_reads_none():
    device = oru.Directory.from_json(
        '{"settings": [{"path": "A/B", "type": "Numeric:U8", "max": 9, "default": 1}]}')
    assert device["A/B"] is None
    assert device.item("A/B") is None
    with pytest.raises(ValueError, match="A/B has no value"):
        device.record("A/B")
    device["A/B"] = 9
    assert device["A/B"] == 9


def test_unknown_paths_are_key_errors(device):
    for read in (lambda: device["Audio/Nope"], lambda: device.info("Audio/Nope"),
                 lambda: device.record("Audio/Nope"), lambda: device.item("Audio/Nope")):
        with pytest.raises(KeyError, match="Audio/Nope"):
            read()
    assert "Audio/Nope" not in device
    assert "Audio/Input/Gain" in device


def test_info_is_the_description_as_plain_data(device):
    info = device.info("Audio/Input/Gain")
    assert info == {"path": "Audio/Input/Gain", "id": 0x40000001, "type": "Numeric:U32",
                    "permission": 3, "min": 0, "max": 100, "default": 50,
                    "family": "Numeric:U32", "name": "Gain"}
    mode = device.info("Video/Mode")
    assert [entry["name"] for entry in mode["table"]] == ["auto", "day", "night"]
    rate = device.info("Video/FrameRate")
    assert (rate["min"], rate["max"], rate["default"]) == (1.0, 60.0, 25.0)
    assert type(rate["max"]) is float and type(rate["id"]) is int


def test_python_types_without_a_value_form_are_type_errors(device):
    for value in (b"72", object(), {1: 2}, 1j):
        with pytest.raises(TypeError):
            device["Audio/Input/Gain"] = value
    assert device["Audio/Input/Gain"] == 72


def test_records_decode_one_after_another_and_refuse_what_is_cut(device):
    gain = device.record("Audio/Input/Gain")
    mode = device.record("Video/Mode")
    assert gain == bytes.fromhex("40000001" "00000004" "0205" "00000048")
    assert oru.decode(gain + mode, device) == [
        ("Audio/Input/Gain", "Numeric:U32", 72), ("Video/Mode", "Enum", "night")]
    # Without the directory there are no names: ids, and entries by number.
    assert oru.decode(mode) == [(0x01000003, "Enum", 2)]
    cases = [
        (gain[:9], "the record at byte 0 is cut short: 9 of its 10 header bytes are there"),
        (gain + mode[:-1], "the record at byte 14 is cut short: its payload has 4 bytes, 3 are there"),
        (bytes.fromhex("40000001000000047705") + b"\0" * 4,
         "the record at byte 0 does not read (code -41)"),
    ]
    for data, message in cases:
        with pytest.raises(ValueError) as raised:
            oru.decode(data, device)
        assert str(raised.value) == message
    assert oru.decode(b"") == []


def test_a_record_of_an_id_the_directory_lacks_decodes_by_id(device):
    other = oru.Directory.from_json(
        '{"settings": [{"path": "Else/Where", "id": 67108865, "type": "Numeric:U32",'
        ' "max": 9, "default": 1}]}')
    other["Else/Where"] = 3
    assert oru.decode(other.record("Else/Where"), device) == [(67108865, "Numeric:U32", 3)]
