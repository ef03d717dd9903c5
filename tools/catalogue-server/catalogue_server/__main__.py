"""The command: serves a folder until it is ended, following a control file if one is named."""

import argparse
import json
import sys
import time
from pathlib import Path

from .behaviour import Behaviour, behaviour_from_json
from .catalogue import Catalogue
from .https_server import CatalogueServer

POLL_SECONDS = 0.2


def read_control(path: Path):
    """The control file's text, empty when there is none."""
    try:
        return path.read_text()
    except FileNotFoundError:
        return ""


def follow(server: CatalogueServer, control: Path) -> None:
    """Applies the control file whenever its text changes. A text that cannot be used is named and changes nothing."""
    last = None
    while True:
        text = read_control(control)
        if text != last:
            last = text
            try:
                server.set_behaviour(behaviour_from_json(json.loads(text)) if text.strip() else Behaviour())
                print(f"catalogue server: {'listening' if server.running else 'stopped'}", flush=True)
            except (ValueError, TypeError, AttributeError) as error:
                print(f"catalogue server: control file not used: {error}", file=sys.stderr, flush=True)
        time.sleep(POLL_SECONDS)


def main() -> int:
    parser = argparse.ArgumentParser(prog="serve", description="Serves a catalogue folder over HTTPS.")
    parser.add_argument("--catalogue", required=True, metavar="FOLDER", help="the folder with products and files")
    parser.add_argument("--certificates", required=True, metavar="FOLDER", help="the folder that make-certs.sh filled")
    parser.add_argument("--base-url", default="https://catalogue.zorva.test", help="how the addresses in the manifest begin")
    parser.add_argument("--address", default="127.0.0.1")
    parser.add_argument("--port", type=int, default=443)
    parser.add_argument("--control", type=Path, metavar="FILE", help="a control file; see the README")
    parser.add_argument("--verbose", action="store_true", help="names each request")
    options = parser.parse_args()

    server = CatalogueServer(Catalogue(options.catalogue, options.base_url), options.certificates, options.port,
                             options.address, options.verbose)
    try:
        if options.control is None:
            server.start()
            print(f"catalogue server: listening on port {server.address[1]}", flush=True)
            while True:
                time.sleep(3600)
        follow(server, options.control)
    except KeyboardInterrupt:
        server.stop()
    return 0


if __name__ == "__main__":
    sys.exit(main())
