"""The editor's cases, each against the page as a user drives it."""
import json
import os
import tempfile
import time

import pytest
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.ui import Select

from page import same


def test_a_value_above_its_maximum_shows_the_reason_before_any_apply(page, server):
    before = server.value("Video/Brightness")
    page.type("Video/Brightness", "130")
    page.wait(lambda d: "maximum" in page.reason("Video/Brightness"),
              message="no reason under the control")
    assert "100" in page.reason("Video/Brightness")
    assert page.control("Video/Brightness").get_attribute("aria-invalid") == "true"
    assert not page.role("apply").is_enabled()
    # A value that passes clears it again, still before any apply.
    page.type("Video/Brightness", "90")
    page.wait(lambda d: page.reason("Video/Brightness") == "", message="the reason stayed")
    assert server.value("Video/Brightness") == before


def test_nothing_is_applied_by_typing_alone(page, server):
    values_before = server.file_values()
    revision = server.settings()["revision"]
    page.type("Audio/Input/Gain", "33")
    page.control("Video/Mirror").send_keys(Keys.SPACE)
    page.type("Audio/Input/Balance", "999")
    page.wait_checked()
    time.sleep(0.4)  # well past the dry run's delay
    diff = page.role("diff").find_elements(By.CSS_SELECTOR, "[data-diff-path]")
    staged = sorted(li.get_attribute("data-diff-path") for li in diff)
    assert staged == ["Audio/Input/Balance", "Audio/Input/Gain", "Video/Mirror"]
    assert server.settings()["revision"] == revision
    assert server.file_values() == values_before
    page.role("discard").click()
    page.wait(lambda d: not page.role("diffbar").is_displayed())
    assert page.control("Audio/Input/Gain").get_attribute("value") == str(values_before["Audio/Input/Gain"])


def test_a_disabled_entry_cannot_be_chosen(page, server):
    select = Select(page.control("Video/Mode"))
    entries = {o.text: o for o in select.options if o.get_attribute("hidden") is None}
    disabled = [text for text, o in entries.items() if not o.is_enabled()]
    assert disabled == ["infrared (3) — disabled"]
    with pytest.raises(NotImplementedError):
        select.select_by_visible_text("infrared (3) — disabled")
    # Nor by keyboard: stepping past the last entry stays on an enabled one.
    page.control("Video/Mode").send_keys(Keys.END)
    for _ in range(4):
        page.control("Video/Mode").send_keys(Keys.ARROW_DOWN)
    assert "disabled" not in select.first_selected_option.text
    page.wait_checked()
    assert server.value("Video/Mode") not in ("infrared", 3)


def test_apply_changes_the_device_and_the_file(page, server):
    # One change set over several families, each through its own control.
    assert page.control("Device/Serial").get_attribute("value") == "18446744073709551615"
    page.type("Device/Serial", "18446744073709551614")
    page.type("Audio/Input/Gain", "33")
    Select(page.control("Video/Mode")).select_by_visible_text("day (1)")
    crop = page.control("Video/Crop")
    right = crop.find_element(By.CSS_SELECTOR, '[aria-label="Crop right"]')
    right.send_keys(Keys.CONTROL, "a")
    right.send_keys("700")
    band = page.control("Audio/Input/Equalizer").find_elements(By.CSS_SELECTOR, "input")[1]
    band.send_keys(Keys.CONTROL, "a")
    band.send_keys("5")
    mirror = server.value("Video/Mirror")
    page.control("Video/Mirror").send_keys(Keys.SPACE)
    page.wait_checked()
    assert page.reason("Audio/Input/Gain") == ""
    page.apply()
    page.wait(lambda d: not page.role("diffbar").is_displayed(), message="still staged")
    expected = {
        "Device/Serial": 18446744073709551614,
        "Audio/Input/Gain": 33,
        "Video/Mode": "day",
        "Video/Crop": {"left": 0, "top": 0, "right": 700, "bottom": 480},
        "Video/Mirror": not mirror,
    }
    on_disk = server.file_values()
    for path, value in expected.items():
        assert on_disk[path] == value, path
        # The service may name an enumeration's entry by its number.
        assert server.value(path) in ((value, 1) if path == "Video/Mode" else (value,)), path
    assert server.value("Audio/Input/Equalizer")[1] == 5
    # A fresh page shows what the device now holds, with nothing staged.
    page.open()
    assert page.control("Device/Serial").get_attribute("value") == "18446744073709551614"
    assert page.control("Audio/Input/Gain").get_attribute("value") == "33"
    assert "day" in Select(page.control("Video/Mode")).first_selected_option.text
    assert not page.role("diffbar").is_displayed()


def test_a_change_from_a_shell_updates_the_open_page_within_a_second(page, server):
    current = server.value("Audio/Input/Balance")
    target = 7 if current != 7 else 8
    done = server.shell_set("Audio/Input/Balance", target)
    assert done.returncode == 0, done.stderr
    start = time.time()
    page.wait(lambda d: page.control("Audio/Input/Balance").get_attribute("value") == str(target),
              timeout=1.0, message="the page did not follow within a second")
    assert time.time() - start <= 1.0
    row = page.setting("Audio/Input/Balance")
    assert "live" in row.get_attribute("class").split()
    # The mark goes after a few seconds; the value stays.
    page.wait(lambda d: "live" not in row.get_attribute("class").split(), timeout=8)


def test_a_stale_apply_shows_the_conflict_and_rebases(page, server):
    page.expected.add(("/api/apply", 409))
    page.type("Video/FrameRate", "24")
    page.wait_checked()
    done = server.shell_set("Video/FrameRate", 50)
    assert done.returncode == 0, done.stderr
    row = page.setting("Video/FrameRate")
    page.wait(lambda d: "50" in page.role("elsewhere", row).text,
              message="the staged value was not flagged")
    # The user's 24 still stands in the control.
    assert page.control("Video/FrameRate").get_attribute("value") == "24"
    page.apply()
    conflict = page.role("conflict")
    page.wait(lambda d: conflict.is_displayed(), message="no conflict shown")
    assert conflict.find_element(By.CSS_SELECTOR,
                                 '[data-conflict-path="Video/FrameRate"]').text.startswith(
        "Video/FrameRate")
    assert server.value("Video/FrameRate") == 50
    page.role("rebase").click()
    page.wait_checked()
    page.apply()
    page.wait(lambda d: not page.role("diffbar").is_displayed(), message="still staged")
    assert server.value("Video/FrameRate") == 24


def test_search_and_the_non_default_filter_narrow_the_list(page, server):
    everything = page.visible_paths()
    listing = server.settings()["settings"]
    assert sorted(everything) == sorted(s["path"] for s in listing)
    search = page.role("search")
    # The keyboard reaches the search box from anywhere.
    page.driver.find_element(By.TAG_NAME, "body").send_keys("/")
    assert page.driver.switch_to.active_element == search
    search.send_keys("input/")
    page.wait(lambda d: len(page.visible_paths()) < len(everything))
    found = page.visible_paths()
    assert found and all("input/" in p.lower() for p in found)
    assert sorted(found) == sorted(p for p in everything if "input/" in p.lower())
    search.send_keys(Keys.ESCAPE)
    page.wait(lambda d: len(page.visible_paths()) == len(everything))
    page.role("non-default").click()
    page.wait(lambda d: len(page.visible_paths()) < len(everything))
    shown = set(page.visible_paths())
    defaults = {s["path"]: s.get("default") for s in listing}
    # Settings whose value is plainly their default are gone, plainly others stay.
    assert "Video/Brightness" in shown  # 80 against 50
    for setting in listing:
        if "default" in setting and same(setting.get("value"), setting["default"]):
            assert setting["path"] not in shown
    assert len(shown) < len(defaults)
    page.role("non-default").click()
    # The tree narrows to one section and the sections below it.
    page.driver.find_element(By.CSS_SELECTOR, '.tree-item[data-section="Audio"]').click()
    page.wait(lambda d: len(page.visible_paths()) < len(everything))
    assert sorted(page.visible_paths()) == sorted(p for p in everything if p.startswith("Audio/"))


def test_a_loaded_file_shows_its_difference_with_every_problem(page, server):
    gain = server.value("Audio/Input/Gain")
    values = {
        "Audio/Input/Gain": 500,
        "Audio/Input/Balance": server.value("Audio/Input/Balance"),  # equal: not listed
        "Video/Mode": "auto" if server.value("Video/Mode") in ("night", 2) else "night",
        "Nowhere/Else": 1,
    }
    folder = tempfile.mkdtemp(prefix="oru-load-")
    name = os.path.join(folder, "other.json")
    with open(name, "w") as f:
        json.dump(values, f)
    page.role("load").send_keys(name)
    dialog = page.role("file-diff")
    page.wait(lambda d: dialog.is_displayed(), message="no difference shown")
    rows = {r.get_attribute("data-file-path"): r
            for r in dialog.find_elements(By.CSS_SELECTOR, "[data-file-path]")}
    assert set(rows) == {"Audio/Input/Gain", "Video/Mode", "Nowhere/Else"}
    assert "maximum 100" in rows["Audio/Input/Gain"].text
    assert "no setting has this path" in rows["Nowhere/Else"].text
    boxes = {p: r.find_element(By.CSS_SELECTOR, "input[type=checkbox]") for p, r in rows.items()}
    # What passes is picked; what the device refuses or lacks is not.
    assert boxes["Video/Mode"].is_selected()
    assert not boxes["Audio/Input/Gain"].is_selected()
    assert not boxes["Nowhere/Else"].is_enabled()
    page.role("file-stage").click()
    page.wait(lambda d: not dialog.is_displayed())
    staged = [li.get_attribute("data-diff-path")
              for li in page.role("diff").find_elements(By.CSS_SELECTOR, "[data-diff-path]")]
    assert staged == ["Video/Mode"]
    assert server.value("Audio/Input/Gain") == gain
    page.role("discard").click()


def test_save_writes_the_device_values(page, server):
    page.role("save").click()
    target = os.path.join(page.driver.downloads, "values.json")
    page.wait(lambda d: os.path.exists(target) and os.path.getsize(target) > 0, timeout=5)
    with open(target) as f:
        saved = json.load(f)
    os.remove(target)
    # What the service keeps on disk is the values file the device would write.
    assert saved == server.file_values()


def test_read_only_settings_have_no_control(page, server):
    listing = {s["path"]: s for s in server.settings()["settings"]}
    assert listing["Device/Name"]["permission"] & 2 == 0
    row = page.setting("Device/Name")
    shown = page.role("value", row)
    assert shown.tag_name == "output"
    assert json.loads(shown.text) == listing["Device/Name"]["value"]
    assert not row.find_elements(By.CSS_SELECTOR, "input, select, textarea, button")


def test_screenshots_at_desktop_and_phone_width(page, server, shots):
    page.type("Audio/Input/Gain", "130")
    Select(page.control("Video/Mode")).select_by_visible_text("night (2)")
    page.wait(lambda d: "maximum" in page.reason("Audio/Input/Gain"))
    page.driver.execute_script("window.scrollTo(0, 0)")
    for width, height in ((1280, 800), (390, 844)):
        overflow = page.shot(os.path.join(shots, "editor-%d.png" % width), width, height)
        assert overflow <= 0, "the page is wider than %d px" % width
    page.role("discard").click()


def test_every_control_has_a_label_and_the_keyboard_reaches_it(page, server):
    unlabelled = page.driver.execute_script("""
        const named = (e) => (e.getAttribute('aria-label') || '').trim() ||
            (e.getAttribute('aria-labelledby') || '').split(' ').some(
                (id) => id && document.getElementById(id)) ||
            (e.labels && [...e.labels].some((l) => l.textContent.trim())) ||
            (e.tagName === 'BUTTON' && e.textContent.trim());
        return [...document.querySelectorAll('input, select, textarea, button')]
            .filter((e) => !named(e)).map((e) => e.outerHTML.slice(0, 80));""")
    assert unlabelled == []
    # Tab from the search box reaches the first setting's control without a mouse.
    page.role("search").click()
    first = page.driver.find_element(By.CSS_SELECTOR, "[data-path] [data-role=value]")
    target = first if first.tag_name in ("input", "select", "textarea") else \
        first.find_element(By.CSS_SELECTOR, "input, select, textarea")
    for _ in range(40):
        ActionChains(page.driver).send_keys(Keys.TAB).perform()
        if page.driver.switch_to.active_element == target:
            break
    assert page.driver.switch_to.active_element == target
