"""The catalogue that the tests publish, and the server that serves it."""

import json
import os
import shutil
from pathlib import Path

from catalogue_server.behaviour import Behaviour, Rule
from catalogue_server.catalogue import Catalogue
from catalogue_server.https_server import CatalogueServer

HOST = "catalogue.zorva.test"
BASE_URL = f"https://{HOST}"
MANIFEST_URL = f"{BASE_URL}/manifest.json"


class Shop:
    """A catalogue folder filled from the sample products, on an HTTPS server on port 443."""

    def __init__(self, folder: Path, samples: Path, certificates: Path):
        self.folder, self.samples = Path(folder), Path(samples)
        for name in ("products", "files"):
            (self.folder / name).mkdir(parents=True)
        self.catalogue = Catalogue(self.folder, BASE_URL)
        self.server = CatalogueServer(self.catalogue, certificates)

    def publish(self, *releases: str) -> None:
        """Makes the catalogue list exactly these releases, in this order."""
        shutil.rmtree(self.folder / "products")
        (self.folder / "products").mkdir()
        for number, release in enumerate(releases):
            description = self.samples / "products" / f"{release}.json"
            shutil.copy(description, self.folder / "products" / f"{number}-{release}.json")
            for platform in json.loads(description.read_text())["platforms"].values():
                target = self.folder / "files" / platform["file"]
                if not target.exists():
                    os.link(self.samples / "files" / platform["file"], target)

    def publish_application(self, product_id: str, file_name: str, content: bytes) -> None:
        """Adds a product of the test's own to what is published."""
        (self.folder / "files" / file_name).write_bytes(content)
        (self.folder / "products" / f"9-{product_id}.json").write_text(json.dumps(
            {"id": product_id, "name": product_id, "version": "1.0.0", "platforms": {"win": {"file": file_name}}}))

    def product(self, product_id: str) -> dict:
        """A product as the manifest lists it now."""
        return next(p for p in self.catalogue.manifest()["products"] if p["id"] == product_id)

    def original(self, name: str) -> Path:
        """The file that a download of this name should equal."""
        return self.folder / "files" / name

    def rule(self, **wishes) -> None:
        """Lets the server treat the downloads as Rule describes; without wishes plainly again."""
        self.server.set_behaviour(Behaviour(rules=[Rule(**{"path": "/files/*", **wishes})] if wishes else []))

    def requests_for(self, path: str):
        return [request for request in self.server.requests if request.path.startswith(path)]

    def close(self) -> None:
        self.server.stop()
