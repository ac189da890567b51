"""browser: a headless Chromium, driven over W3C WebDriver with the standard library alone.

    with Browser() as browser:
        browser.open(path)
        browser.run("return document.title")
"""
import base64
import contextlib
import http.client
import json
import shutil
import socket
import subprocess
import tempfile
import time
from pathlib import Path

OPTIONS = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
           "--disable-background-networking", "--disable-component-update", "--disable-sync",
           "--hide-scrollbars", "--force-color-profile=srgb"]


class Browser:
    """A browser of its own, with an empty profile, that is gone at the end of the with block."""

    def __init__(self, seconds=30, width=1280, height=900):
        self.seconds = seconds
        self.size = (width, height)

    def __enter__(self):
        self.folder = tempfile.mkdtemp(prefix="kal-browser-")
        with socket.socket() as free:
            free.bind(("127.0.0.1", 0))
            self.port = free.getsockname()[1]
        self.driver = subprocess.Popen(["chromedriver", f"--port={self.port}"],
                                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self.session = None
        try:
            self.await_driver()
            options = OPTIONS + [f"--user-data-dir={self.folder}",
                                 f"--window-size={self.size[0]},{self.size[1]}"]
            self.session = self.ask("POST", "/session", {"capabilities": {"alwaysMatch": {
                "browserName": "chrome", "goog:chromeOptions": {"args": options},
                "goog:loggingPrefs": {"performance": "ALL", "browser": "ALL"}}}})["sessionId"]
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        if self.session:
            with contextlib.suppress(OSError, RuntimeError, http.client.HTTPException):
                self.ask("DELETE", f"/session/{self.session}")
        self.driver.terminate()
        try:
            self.driver.wait(5)
        except subprocess.TimeoutExpired:
            self.driver.kill()
            self.driver.wait()
        shutil.rmtree(self.folder, ignore_errors=True)

    def await_driver(self):
        end = time.monotonic() + self.seconds
        while True:
            try:
                if self.ask("GET", "/status")["ready"]:
                    return
            except OSError:
                if time.monotonic() > end or self.driver.poll() is not None:
                    raise
            time.sleep(0.05)

    def ask(self, method, path, body=None):
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=self.seconds)
        try:
            connection.request(method, path, json.dumps(body) if method == "POST" else None,
                               {"Content-Type": "application/json"})
            answer = json.loads(connection.getresponse().read())["value"]
        finally:
            connection.close()
        if isinstance(answer, dict) and "error" in answer:
            raise RuntimeError(f"{answer['error']}: {answer['message']}")
        return answer

    def tell(self, path, body=None):
        return self.ask("POST", f"/session/{self.session}{path}", body or {})

    def open(self, page):
        self.tell("/url", {"url": Path(page).resolve().as_uri()})

    def leave(self):
        """An empty page."""
        self.tell("/url", {"url": "about:blank"})

    def run(self, script, *arguments):
        return self.tell("/execute/sync", {"script": script, "args": list(arguments)})

    def press(self, keys):
        """Keys to whatever has the focus, one after the other."""
        self.tell("/actions", {"actions": [{"type": "key", "id": "keys", "actions": [
            action for key in keys
            for action in ({"type": "keyDown", "value": key}, {"type": "keyUp", "value": key})]}]})

    def devtools(self, command, **parameters):
        return self.tell("/goog/cdp/execute", {"cmd": command, "params": parameters})

    def log(self, kind):
        return self.tell("/se/log", {"type": kind})

    def size_to(self, width, height):
        self.devtools("Emulation.setDeviceMetricsOverride", width=width, height=height,
                      deviceScaleFactor=1, mobile=False)

    def colours(self, scheme):
        """light or dark, as the user's system would ask for."""
        self.devtools("Emulation.setEmulatedMedia",
                      features=[{"name": "prefers-color-scheme", "value": scheme}])

    def picture(self):
        """What is seen now, as PNG."""
        return base64.b64decode(self.ask("GET", f"/session/{self.session}/screenshot"))

    def print(self):
        """The page on A4, as PDF."""
        return base64.b64decode(self.tell("/print", {
            "page": {"width": 21.0, "height": 29.7}, "background": True,
            "margin": {"top": 0, "bottom": 0, "left": 0, "right": 0}}))
