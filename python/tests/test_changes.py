"""Change sets and events: all or nothing, one event per applied value,
pulled by the script on its own thread."""

import json
import threading
import time

import pytest

import oru


def test_a_change_set_applies_every_value_with_one_event_each(device):
    with device.change() as c:
        c["Video/Mode"] = "day"
        c["Audio/Input/Gain"] = 80
        c["Audio/Input/Gain"] = 81  # the last word on a path counts
        assert len(c) == 2
    assert (device["Audio/Input/Gain"], device["Video/Mode"]) == (81, "day")
    events = device.events()
    # In the order of the settings' ids, as the directory applies them.
    assert [(e.path, e.old, e.value) for e in events] == [
        ("Video/Mode", "night", "day"), ("Audio/Input/Gain", 72, 81)]
    assert events[1].id == 0x40000001 and events[1].family == "Numeric:U32"
    assert events[1].item.value == 81
    assert device.events() == []


def test_a_change_set_with_one_refused_value_applies_none(device):
    with pytest.raises(oru.CheckError) as raised:
        with device.change() as c:
            c["Audio/Input/Gain"] = 80
            c["Video/Mode"] = "dusk"
            c["Device/Name"] = "y" * 40
    assert [(p.path, p.message) for p in raised.value.problems] == [
        ("Video/Mode", 'no entry is named "dusk"; allowed: auto, day, night'),
        ("Device/Name", "the text is 40 bytes, above the maximum length 16 bytes"),
    ]
    assert (device["Audio/Input/Gain"], device["Video/Mode"]) == (72, "night")
    assert device.events() == []


def test_an_exception_in_the_block_discards_the_set(device):
    with pytest.raises(RuntimeError):
        with device.change() as c:
            c["Audio/Input/Gain"] = 80
            raise RuntimeError("script failed")
    assert device["Audio/Input/Gain"] == 72
    with pytest.raises(ValueError, match="closed"):
        c["Audio/Input/Gain"] = 81
    assert device.events() == []


def test_check_and_a_set_s_own_check_apply_nothing(device):
    assert device.check({"Audio/Input/Gain": 80, "Video/Mode": "day"}) == []
    problems = device.check({"Audio/Input/Gain": 150, "Video/Mode": "dusk"})
    assert [p.path for p in problems] == ["Audio/Input/Gain", "Video/Mode"]
    c = device.change()
    c["Audio/Input/Balance"] = 99
    assert [p.message for p in c.check()] == ["99 is above the maximum 50"]
    assert device["Audio/Input/Gain"] == 72 and device["Audio/Input/Balance"] == -12
    assert device.events() == []
    with pytest.raises(TypeError):
        device.check([("Audio/Input/Gain", 1)])


def test_update_is_a_change_set_of_a_dict(device):
    with pytest.raises(oru.CheckError):
        device.update({"Audio/Input/Gain": 1, "Audio/Input/Balance": 51})
    assert device["Audio/Input/Gain"] == 72
    device.update({"Audio/Input/Gain": 1, "Audio/Input/Balance": 50})
    assert [e.path for e in device.events()] == ["Audio/Input/Gain", "Audio/Input/Balance"]


def test_events_wait_for_a_change_up_to_the_timeout(device):
    start = time.monotonic()
    assert device.events(timeout=0.2) == []
    assert time.monotonic() - start >= 0.15

    def later():
        time.sleep(0.1)
        device["Audio/Input/Gain"] = 5

    setter = threading.Thread(target=later)
    start = time.monotonic()
    setter.start()
    # The wait lets the other thread run: the change arrives long before the timeout.
    events = device.events(timeout=10)
    setter.join()
    assert time.monotonic() - start < 5
    assert [(e.path, e.value) for e in events] == [("Audio/Input/Gain", 5)]


def test_unread_events_are_bounded_and_the_dropped_ones_counted(device):
    device.events()
    assert device.events_lost == 0
    waiting = 65536
    for i in range(waiting + 10):
        device["Audio/Input/Gain"] = i % 101
    events = device.events()
    assert len(events) == waiting
    assert device.events_lost == 10
    # The newest are kept: the last one is the value the device holds.
    assert events[-1].value == device["Audio/Input/Gain"] == (waiting + 9) % 101
    assert (events[0].old, events[0].value) == (9, 10)
    device["Audio/Input/Gain"] = 1
    assert len(device.events()) == 1 and device.events_lost == 10


def test_threads_may_share_a_device(device):
    errors = []

    def work(offset):
        try:
            for i in range(200):
                with device.change() as c:
                    c["Audio/Input/Gain"] = (i + offset) % 101
                    c["Audio/Input/Balance"] = -((i + offset) % 51)
                device.check({"Audio/Input/Gain": 1})
        except Exception as error:  # pragma: no cover - reported below
            errors.append(error)

    threads = [threading.Thread(target=work, args=(n,)) for n in range(4)]
    for each in threads:
        each.start()
    for each in threads:
        each.join()
    assert errors == []
    # Every applied value was recorded once, each a pair of the same set.
    events = device.events()
    assert len(events) == 4 * 200 * 2


def test_a_large_change_set_applies_as_one_or_not_at_all():
    # Large enough that the set is applied without the GIL.
    count = 5000
    paths = ["Big/Setting%d" % i for i in range(count)]
    device = oru.Directory.from_json(json.dumps({"settings": [
        {"path": p, "type": "Numeric:U16", "max": 1000, "default": 0} for p in paths]}))
    with device.change() as c:
        for i, path in enumerate(paths):
            c[path] = i % 1000
    assert [device[p] for p in paths[995:1002]] == [995, 996, 997, 998, 999, 0, 1]
    assert len(device.events()) == count
    with pytest.raises(oru.CheckError) as raised:
        with device.change() as c:
            for path in paths:
                c[path] = 7
            c[paths[-1]] = 1001
    assert [p.path for p in raised.value.problems] == [paths[-1]]
    assert device[paths[0]] == 0 and device.events() == []
