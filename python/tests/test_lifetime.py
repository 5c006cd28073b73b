"""Objects live under the library's own counts: a Python object and the
directory share one Item, and either may go first."""

import gc
import json

import oru


def test_an_item_is_the_directory_s_own_and_outlives_it(sample_files, sample_values):
    device = oru.Directory.load(sample_files[0])
    device.update(sample_values)
    item = device.item("Audio/Input/Gain")
    # The same Item, not a copy: the directory hands out the object it holds.
    assert device.item("Audio/Input/Gain") is item
    record = device.record("Audio/Input/Gain")
    device["Audio/Input/Gain"] = 10
    # An Item is a value: setting the path puts a new Item in its place.
    assert device.item("Audio/Input/Gain") is not item
    assert item.value == 72
    events = device.events()
    del device
    gc.collect()
    assert (item.id, item.family, item.value, item.text) == (0x40000001, "Numeric:U32", 72, "72")
    assert item.record() == record
    assert events[-1].item.value == 10 and events[-1].value == 10
    assert repr(item) == "<oru.Item 0x40000001 Numeric:U32 72>"


def test_a_change_set_keeps_its_directory(sample_files):
    device = oru.Directory.load(sample_files[0])
    change = device.change()
    probe = device.item  # a bound method holds the directory too
    del device
    gc.collect()
    change["Audio/Input/Gain"] = 9
    change.apply()
    assert probe("Audio/Input/Gain").value == 9


def test_an_empty_directory_is_harmless():
    device = oru.Directory()
    assert (len(device), list(device), device.events()) == (0, [], [])
    assert json.loads(device.describe()) == {"settings": []}
    assert device.check({"A/B": 1})[0].message == "no setting has this path"
