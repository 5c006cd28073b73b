"""oru.testing.edges: the values it proposes, checked by the device itself."""

import struct

import pytest

import oru
from oru.testing import Edge, edges
from conftest import sample_paths, wide_paths


def verdicts(device, path):
    """Which proposals the device's own check disagrees with."""
    proposed = edges(device.info(path))
    wrong = []
    for edge in proposed.passing:
        problems = device.check({path: edge.value})
        if problems:
            wrong.append(("should pass", edge.label, [p.message for p in problems]))
    for edge in proposed.failing:
        if not device.check({path: edge.value}):
            wrong.append(("should fail", edge.label))
    return proposed, wrong


@pytest.mark.parametrize("path", sample_paths())
def test_the_device_agrees_with_each_proposal_for_the_sample(device, path):
    proposed, wrong = verdicts(device, path)
    assert wrong == []
    assert proposed.passing and proposed.failing
    # What fails is refused when set too, and leaves the value as it was.
    before = device[path]
    for edge in proposed.failing:
        with pytest.raises(oru.CheckError):
            device[path] = edge.value
    assert device[path] == before


@pytest.mark.parametrize("path", wide_paths())
def test_the_device_agrees_with_each_proposal_for_the_wide_device(wide, path):
    proposed, wrong = verdicts(wide, path)
    assert wrong == []
    assert proposed.passing and proposed.failing


def single(value):
    return struct.unpack("<f", struct.pack("<f", value))[0]


def test_the_bounds_and_one_past_them():
    info = {"family": "Numeric:U8", "min": 0, "max": 100, "default": 50}
    proposed = edges(info)
    assert [e.value for e in proposed.passing] == [0, 100, 50]
    assert proposed.failing[:3] == [Edge("min - 1", -1), Edge("max + 1", 101),
                                    Edge("a fraction", 0.5)]
    assert {type(e.value) for e in proposed.failing[3:]} == {str, bool}
    # One past a float bound is the next float, not the next double.
    ratio = edges({"family": "Numeric:Float", "min": -0.5, "max": 0.75, "default": 0})
    below, above = ratio.failing[0].value, ratio.failing[1].value
    assert below < -0.5 and single(below) == below and single((below + -0.5) / 2) in (below, -0.5)
    assert above > 0.75 and single(above) == above and single((above + 0.75) / 2) in (above, 0.75)
    # At the largest double there is nothing past: no proposal rather than infinity.
    big = edges({"family": "Numeric:Double", "min": 0.0, "max": 1.7976931348623157e308,
                 "default": 0.0})
    assert [e.label for e in big.failing][:2] == ["min - 1", "text for a number"]


def test_entries_disabled_ones_and_a_fixed_bool():
    level = edges({"family": "Enum", "default": "low", "table": [
        {"name": "low", "value": 0, "disabled": False},
        {"name": "mid", "value": 1, "disabled": True}]})
    assert [e.value for e in level.passing] == ["low"]
    assert level.failing[0] == Edge("disabled entry 'mid'", "mid")
    assert "not-an-entry" in [e.value for e in level.failing]
    locked = edges({"family": "Bool", "fixed": True, "default": True})
    assert [e.value for e in locked.passing] == [True]
    assert locked.failing[0].value is False


def test_a_family_it_does_not_know_gets_the_default_and_a_wrong_type():
    proposed = edges({"type": "Extended", "default": {"first": "a", "second": "b"}})
    assert proposed.passing == [Edge("default", {"first": "a", "second": "b"})]
    assert [e.value for e in proposed.failing] == [1]
