"""The editor in a real headless Chromium, against a real `oru serve`.

Debian's chromium and chromedriver are used from /usr/bin, so nothing is
downloaded; without them the suite exits with 77, which CTest reports as
skipped.
"""
import json
import os
import re
import shutil
import subprocess
import tempfile
import time
import urllib.error
import urllib.request

import pytest

CHROMIUM = "/usr/bin/chromium"
CHROMEDRIVER = "/usr/bin/chromedriver"
SKIPPED = 77


def pytest_addoption(parser):
    parser.addoption("--oru", help="the oru program to serve the sample device with")
    parser.addoption("--shots", help="folder the screenshots are written to")


def pytest_configure(config):
    missing = [p for p in (CHROMIUM, CHROMEDRIVER) if not os.access(p, os.X_OK)]
    try:
        import selenium  # noqa: F401
    except ImportError:
        missing.append("python3-selenium")
    if missing:
        print("web editor tests skipped: %s not installed (scripts/install-deps installs them)"
              % ", ".join(missing))
        pytest.exit("browser not installed", returncode=SKIPPED)
    if not config.getoption("--oru"):
        raise pytest.UsageError("--oru PATH is required")


class RefusedValues(Exception):
    def __init__(self, paths):
        super().__init__(", ".join(sorted(paths)))
        self.paths = paths


def unpointer(pointer):
    """The setting a problem's pointer into a values file names."""
    return pointer[1:].split("/")[0].replace("~1", "/").replace("~0", "~")


class Server:
    """One `oru serve` of a copy of the sample device, with a client of its API."""

    def __init__(self, oru, folder):
        self.oru = oru
        self.folder = folder
        self.description = os.path.join(folder, "device.json")
        self.values = os.path.join(folder, "values.json")
        self.token_file = os.path.join(folder, "token")
        self.proc = None
        self.url = None
        self.editor = None

    def start(self):
        self.proc = subprocess.Popen(
            [self.oru, "serve", self.description, self.values, "--listen", "127.0.0.1:0",
             "--token-file", self.token_file],
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        first = self.proc.stdout.readline()
        match = re.match(r"listening on (http://\S+)", first)
        if not match:
            self.proc.kill()
            errors = self.proc.stderr.read()
            self.proc.wait()
            paths = {unpointer(m) for m in re.findall(r"^oru serve: (/[^:\s]+)", errors, re.M)}
            if paths:
                raise RefusedValues(paths)
            raise RuntimeError("oru serve said %r, then %r" % (first, errors))
        self.url = match.group(1)
        deadline = time.time() + 10
        while self.editor is None and time.time() < deadline:
            line = self.proc.stdout.readline()
            found = re.search(r"(http://\S+\?token=\S+)", line)
            if found:
                self.editor = found.group(1)
        if self.editor is None:
            raise RuntimeError("oru serve printed no address with a token")
        with open(self.token_file) as f:
            self.token = f.read().strip()

    def stop(self):
        if self.proc and self.proc.poll() is None:
            self.proc.terminate()
            try:
                self.proc.wait(timeout=10)
            except subprocess.TimeoutExpired:
                self.proc.kill()
                self.proc.wait()

    def request(self, method, path, body=None):
        data = json.dumps(body).encode() if body is not None else None
        req = urllib.request.Request(self.url + path, data=data, method=method)
        req.add_header("Authorization", "Bearer " + self.token)
        if data is not None:
            req.add_header("Content-Type", "application/json")
        try:
            with urllib.request.urlopen(req, timeout=10) as res:
                return res.status, json.loads(res.read() or b"null")
        except urllib.error.HTTPError as e:
            return e.code, json.loads(e.read() or b"null")

    def value(self, path):
        status, data = self.request("GET", "/api/settings/" + path)
        assert status == 200, data
        return data.get("value")

    def settings(self):
        status, data = self.request("GET", "/api/settings")
        assert status == 200, data
        return data

    def shell_set(self, *pairs):
        """`oru set` from a shell, as another user of the device would."""
        return subprocess.run(
            [self.oru, "set", "--server", self.url, "--token-file", self.token_file] +
            [str(p) for p in pairs],
            capture_output=True, text=True, timeout=20)

    def file_values(self):
        with open(self.values) as f:
            return json.load(f)


def sample_device(oru, folder):
    """The program's sample device, with a disabled enumeration entry and its
    one refused value put right so that the service starts."""
    description = json.loads(subprocess.check_output([oru, "describe"], text=True))
    for setting in description["settings"]:
        if setting["path"] == "Video/Mode":
            setting["table"].append({"name": "infrared", "value": 3, "disabled": True})
    # A number no double holds exactly.
    description["settings"].append({"path": "Device/Serial", "type": "Numeric:U64", "min": 0,
                                    "max": 18446744073709551615, "default": 0, "permission": 3})
    values = json.loads(subprocess.check_output([oru, "demo", "--values"], text=True))
    values["Video/Brightness"] = 80
    values["Device/Serial"] = 18446744073709551615
    with open(os.path.join(folder, "device.json"), "w") as f:
        json.dump(description, f, indent=2)
    with open(os.path.join(folder, "values.json"), "w") as f:
        json.dump(values, f, indent=2)


@pytest.fixture(scope="session")
def server(request):
    oru = os.path.abspath(request.config.getoption("--oru"))
    folder = tempfile.mkdtemp(prefix="oru-web-")
    sample_device(oru, folder)
    srv = Server(oru, folder)
    try:
        srv.start()
    except RefusedValues as refused:
        # The sample's values follow the program; those it refuses today are
        # left out, so that the editor is tested on everything else.
        with open(srv.values) as f:
            values = json.load(f)
        dropped = sorted(refused.paths & set(values))
        if not dropped:
            raise
        for path in dropped:
            del values[path]
        with open(srv.values, "w") as f:
            json.dump(values, f, indent=2)
        print("left out of the sample's values: %s" % ", ".join(dropped))
        srv.start()
    yield srv
    srv.stop()
    shutil.rmtree(folder, ignore_errors=True)


@pytest.fixture(scope="session")
def shots(request):
    folder = request.config.getoption("--shots") or tempfile.mkdtemp(prefix="oru-shots-")
    os.makedirs(folder, exist_ok=True)
    return folder


@pytest.fixture(scope="session")
def browser(server):
    from selenium import webdriver
    from selenium.webdriver.chrome.service import Service

    profile = tempfile.mkdtemp(prefix="oru-chromium-")
    downloads = tempfile.mkdtemp(prefix="oru-downloads-")
    options = webdriver.ChromeOptions()
    options.binary_location = CHROMIUM
    for arg in ("--headless=new", "--no-sandbox", "--disable-gpu",
                "--disable-background-networking", "--disable-component-update",
                "--disable-sync", "--no-first-run", "--disable-default-apps",
                "--user-data-dir=" + profile, "--window-size=1280,800"):
        options.add_argument(arg)
    options.add_experimental_option("prefs", {"download.default_directory": downloads,
                                              "download.prompt_for_download": False})
    options.set_capability("goog:loggingPrefs", {"browser": "ALL"})
    driver = webdriver.Chrome(service=Service(executable_path=CHROMEDRIVER), options=options)
    driver.downloads = downloads
    driver.execute_cdp_cmd("Browser.setDownloadBehavior",
                           {"behavior": "allow", "downloadPath": downloads})
    # The one-time address sets the cookie and leaves the token out of the page's address.
    driver.get(server.editor)
    assert "token=" not in driver.current_url
    yield driver
    driver.quit()
    shutil.rmtree(profile, ignore_errors=True)
    shutil.rmtree(downloads, ignore_errors=True)


def console_errors(driver, expected):
    """Severe browser log entries, except the answers a case expects: a refused
    request shows in the log as a network entry with its status."""
    errors = []
    for entry in driver.get_log("browser"):
        if entry["level"] != "SEVERE":
            continue
        status = re.search(r"status of (\d+)", entry["message"])
        if entry.get("source") == "network" and status:
            url = entry["message"].split(" ")[0]
            if any(url.endswith(route) and int(status.group(1)) == code
                   for route, code in expected):
                continue
        errors.append(entry)
    return errors


@pytest.fixture
def page(browser, server):
    from page import Page

    browser.get_log("browser")  # what earlier cases left
    browser.set_window_size(1280, 800)
    p = Page(browser, server)
    p.open()
    yield p
    errors = console_errors(browser, p.expected)
    assert not errors, "console errors: %s" % errors
