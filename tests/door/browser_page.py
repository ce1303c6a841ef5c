"""A page in headless Chromium sells at a door that allows its origin; a page of another origin does
not. Not among the tests of door.http: it needs Debian's chromium, chromium-driver and
python3-selenium, and door.browser tells where these are missing."""
import http.server
import json
import shutil
import threading

import pytest

from conftest import make_token

selenium = pytest.importorskip("selenium.webdriver", reason="Debian: python3-selenium")
PROGRAMS = shutil.which("chromium"), shutil.which("chromedriver")
if not all(PROGRAMS):
    pytest.skip("Debian: chromium, chromium-driver", allow_module_level=True)

SELL = """
const [url, token, key, done] = arguments;
fetch(url + "/v1/receipts", {
  method: "POST",
  headers: {"Content-Type": "application/json", "Idempotency-Key": key,
            ...(token ? {"Authorization": "Bearer " + token} : {})},
  body: JSON.stringify({kind: "receipt", items: [{department: 1, price: "1.20"}],
                        payments: [{tender: "cash"}]})
}).then(async (reply) => done([reply.status, await reply.json()]),
        (error) => done([0, error.name]));
"""


class Page(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        text = b"<!doctype html><title>till</title>"
        self.send_response(200)
        self.send_header("Content-Type", "text/html")
        self.send_header("Content-Length", str(len(text)))
        self.end_headers()
        self.wfile.write(text)

    def log_message(self, *_):
        pass


@pytest.fixture
def pages():
    """Two origins."""
    servers = [http.server.ThreadingHTTPServer(("127.0.0.1", 0), Page) for _ in range(2)]
    for server in servers:
        threading.Thread(target=server.serve_forever, daemon=True).start()
    yield [f"http://127.0.0.1:{server.server_port}" for server in servers]
    for server in servers:
        server.shutdown()


@pytest.fixture
def browser(tmp_path):
    options = selenium.ChromeOptions()
    options.binary_location = PROGRAMS[0]
    for flag in ("headless", "no-sandbox", "disable-gpu", "disable-quic", "no-first-run",
                 "disable-background-networking", "disable-component-update", "disable-sync",
                 "disable-dev-shm-usage", f"user-data-dir={tmp_path / 'profile'}"):
        options.add_argument(f"--{flag}")
    service = selenium.ChromeService(PROGRAMS[1]) if hasattr(selenium, "ChromeService") else None
    driver = selenium.Chrome(options=options, service=service)
    driver.set_script_timeout(60)
    yield driver
    driver.quit()


def test_a_page_of_an_allowed_origin_sells_and_another_does_not(doors, folder, pages, browser):
    allowed, other = pages
    tokens = folder / "shop.tokens"
    token = make_token(tokens, "web-1", "desk")
    door = doors(folder).start("--tokens", tokens, "--allow-origin", allowed)
    url = f"http://127.0.0.1:{door.port}"

    def sell(page, key, with_token=token):
        browser.get(page)
        return browser.execute_async_script(SELL, url, with_token, key)

    status, job = sell(allowed, "k1")
    assert (status, job["state"], job["desk"]) == (201, "confirmed", "web-1"), json.dumps(job)
    assert sell(allowed, "k1")[1]["replayed"]
    # The page sees why.
    status, problem = sell(allowed, "k2", None)
    assert (status, problem["code"]) == (401, "no_token")
    assert sell(other, "k3") == [0, "TypeError"]
    assert len(door.documents()) == 1
