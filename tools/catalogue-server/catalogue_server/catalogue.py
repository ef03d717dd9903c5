"""Makes the manifest of a folder of products."""

import hashlib
import json
from pathlib import Path
from urllib.parse import quote

PRODUCTS = "products"
FILES = "files"
MANIFEST_PATH = "/manifest.json"
FILES_PATH = "/files/"


class Catalogue:
    """A folder with "products" (one JSON description a product, listed by file name) and "files" (what they download).

    A description is a product object of the manifest, except that a platform may hold {"file": NAME} in place of "url",
    "sha256" and "sizeBytes", which are then taken from files/NAME. The folder is read anew for each manifest, so that a
    release is published by putting its description and its file there."""

    def __init__(self, folder, base_url: str):
        """base_url: scheme and host of the addresses in the manifest, without a last "/"."""
        self.folder = Path(folder)
        self.base_url = base_url
        self._hashes = {}

    def manifest(self) -> dict:
        """The manifest of what is in the folder now."""
        products = [self._complete(json.loads(path.read_text()))
                    for path in sorted((self.folder / PRODUCTS).glob("*.json"))]
        return {"manifestVersion": 1, "products": products}

    def manifest_bytes(self) -> bytes:
        """The same as it is sent."""
        return (json.dumps(self.manifest(), indent=2, ensure_ascii=False) + "\n").encode()

    def file(self, name: str):
        """The download of this name, or None. Only plain names of the files folder are found."""
        path = self.folder / FILES / name
        return path if "/" not in name and name not in ("", ".", "..") and path.is_file() else None

    def _complete(self, product: dict) -> dict:
        for key, platform in product.get("platforms", {}).items():
            if "file" in platform:
                path = self.folder / FILES / platform["file"]
                product["platforms"][key] = {"url": self.base_url + FILES_PATH + quote(path.name),
                                             "sha256": self._sha256(path), "sizeBytes": path.stat().st_size}
        return product

    def _sha256(self, path: Path) -> str:
        status = path.stat()
        key = (path.name, status.st_size, status.st_mtime_ns)
        if key not in self._hashes:
            with path.open("rb") as file:
                self._hashes[key] = hashlib.file_digest(file, "sha256").hexdigest()
        return self._hashes[key]
