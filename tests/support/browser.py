"""A real browser without a window: Chromium, told what to do through a pipe."""
import base64
import fcntl
import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import time

ANSWERS_WITHIN = 60  # seconds


def out_of_the_way(descriptor):
    """The same under a number above those that the browser wants."""
    moved = fcntl.fcntl(descriptor, fcntl.F_DUPFD_CLOEXEC, 10)
    os.close(descriptor)
    return moved


class Browser:
    """One page of it; what the page says on its console is in `console`."""

    def __init__(self):
        program = shutil.which("chromium")
        if program is None:
            raise RuntimeError("Chromium is not installed (tools/packages.sh --all installs it)")
        self.folder = pathlib.Path(tempfile.mkdtemp())
        to_browser, self.out = map(out_of_the_way, os.pipe())
        self.answers, from_browser = map(out_of_the_way, os.pipe())
        # The browser takes its orders from descriptor 3 and answers on 4.
        launcher = f"exec 3<&{to_browser} 4>&{from_browser}; exec \"$@\""
        self.process = subprocess.Popen(
            ["bash", "-c", launcher, "browser", program, "--headless=new", "--no-sandbox", "--disable-gpu",
             "--disable-dev-shm-usage", "--no-first-run", "--disable-extensions", "--hide-scrollbars",
             f"--user-data-dir={self.folder}", "--remote-debugging-pipe", "about:blank"],
            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
            pass_fds=(to_browser, from_browser))
        os.close(to_browser)
        os.close(from_browser)
        self.number = 0
        self.session = None
        self.unread = b""
        self.events = []
        self.console = []
        target = self.call("Target.createTarget", url="about:blank")["targetId"]
        self.session = self.call("Target.attachToTarget", targetId=target, flatten=True)["sessionId"]
        for domain in ("Page", "Runtime", "Log", "Network"):
            self.call(f"{domain}.enable")

    def close(self):
        self.process.kill()
        self.process.wait()
        os.close(self.out)
        os.close(self.answers)
        shutil.rmtree(self.folder, ignore_errors=True)

    def call(self, method, **parameters):
        self.number += 1
        message = {"id": self.number, "method": method, "params": parameters}
        if self.session:
            message["sessionId"] = self.session
        os.write(self.out, json.dumps(message).encode() + b"\0")
        while True:
            answer = self._read()
            if answer.get("id") == self.number:
                if "error" in answer:
                    raise RuntimeError(f"{method}: {answer['error']}")
                return answer["result"]
            self._note(answer)

    def _read(self):
        end = time.monotonic() + ANSWERS_WITHIN
        while b"\0" not in self.unread:
            piece = os.read(self.answers, 1 << 20)
            if not piece or time.monotonic() > end:
                raise RuntimeError("the browser does not answer")
            self.unread += piece
        message, self.unread = self.unread.split(b"\0", 1)
        return json.loads(message)

    def _note(self, event):
        method, parameters = event.get("method"), event.get("params", {})
        if method == "Log.entryAdded":
            self.console.append(parameters["entry"]["text"])
        elif method == "Runtime.consoleAPICalled":
            self.console.append(str(parameters["args"]))
        elif method == "Runtime.exceptionThrown":
            self.console.append(parameters["exceptionDetails"]["text"])
        self.events.append((method, parameters))

    def requests(self):
        """What the page asked for."""
        return [parameters["request"]["url"] for method, parameters in self.events if method == "Network.requestWillBeSent"]

    def show(self, file, width, scheme):
        """Opens a file as a window so wide, light or dark."""
        self.events, self.console = [], []
        self.call("Emulation.setDeviceMetricsOverride", width=width, height=900, deviceScaleFactor=1, mobile=False)
        self.call("Emulation.setEmulatedMedia", features=[{"name": "prefers-color-scheme", "value": scheme}])
        self.call("Page.navigate", url=pathlib.Path(file).as_uri())
        end = time.monotonic() + ANSWERS_WITHIN
        while not any(method == "Page.loadEventFired" for method, _ in self.events):
            if time.monotonic() > end:
                raise RuntimeError("the page does not load")
            self._note(self._read())

    def value(self, expression):
        """Of an expression in the page."""
        return self.call("Runtime.evaluate", expression=expression, returnByValue=True)["result"].get("value")

    def picture(self, file):
        data = self.call("Page.captureScreenshot", format="png", captureBeyondViewport=True,
                         clip={"x": 0, "y": 0, "width": self.value("innerWidth"),
                               "height": self.value("document.documentElement.scrollHeight"), "scale": 1})["data"]
        pathlib.Path(file).write_bytes(base64.b64decode(data))
