"""The editor as the tests see it: only through the stable data-* attributes."""
import json
import time

from selenium.common.exceptions import StaleElementReferenceException
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.ui import WebDriverWait


def css_path(path):
    return '[data-path="%s"]' % path


class Page:
    def __init__(self, driver, server):
        self.driver = driver
        self.server = server
        # (route, status) pairs a case expects the service to refuse.
        self.expected = set()

    def open(self):
        self.driver.get(self.server.url + "/")
        self.wait(lambda d: d.find_elements(By.CSS_SELECTOR, "[data-path]"))
        self.wait(lambda d: self.role("status").text == "live")

    def wait(self, condition, timeout=5, message=""):
        return WebDriverWait(self.driver, timeout, poll_frequency=0.02,
                             ignored_exceptions=(StaleElementReferenceException,)).until(
            condition, message)

    def role(self, role, within=None):
        return (within or self.driver).find_element(By.CSS_SELECTOR, '[data-role="%s"]' % role)

    def setting(self, path):
        return self.driver.find_element(By.CSS_SELECTOR, css_path(path))

    def control(self, path):
        return self.role("value", self.setting(path))

    def reason(self, path):
        return self.role("reason", self.setting(path)).text

    def type(self, path, text):
        field = self.control(path)
        field.send_keys(Keys.CONTROL, "a")
        field.send_keys(text)

    def visible_paths(self):
        # One round trip: asking element by element takes seconds.
        return self.driver.execute_script(
            "return [...document.querySelectorAll('[data-path]')]"
            ".filter((e) => e.checkVisibility()).map((e) => e.dataset.path)")

    def wait_checked(self):
        """Until the page has the service's verdict on what is staged."""
        self.wait(lambda d: self.role("apply-note").text not in ("checking…", "applying…"),
                  message="the dry run did not answer")

    def apply(self):
        button = self.role("apply")
        self.wait(lambda d: button.is_enabled(), message="apply stayed disabled")
        button.click()

    def shot(self, file, width, height):
        self.driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": width, "height": height, "deviceScaleFactor": 1, "mobile": width < 600})
        try:
            time.sleep(0.2)  # layout settles
            self.driver.save_screenshot(file)
            overflow = self.driver.execute_script(
                "return document.documentElement.scrollWidth - "
                "document.documentElement.clientWidth")
        finally:
            self.driver.execute_cdp_cmd("Emulation.clearDeviceMetricsOverride", {})
        return overflow

    def device_value(self, path):
        return self.server.value(path)


def same(a, b):
    return json.dumps(a, sort_keys=True) == json.dumps(b, sort_keys=True)
