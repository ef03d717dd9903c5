"""What an installed Hub consists of on Debian."""

import configparser
from pathlib import Path

NAME = "zorva-hub"
DESKTOP_ENTRY = "usr/share/applications/com.zorva.hub.desktop"
METAINFO = "usr/share/metainfo/com.zorva.hub.metainfo.xml"
ICON_SIZES = (16, 22, 24, 32, 48, 64, 128, 256, 512)
FILES = sorted([
    "usr/bin/zorva-hub", DESKTOP_ENTRY, METAINFO, "usr/share/man/man1/zorva-hub.1.gz",
    "usr/share/doc/zorva-hub/changelog.gz", "usr/share/doc/zorva-hub/copyright",
    *(f"usr/share/icons/hicolor/{size}x{size}/apps/com.zorva.hub.png" for size in ICON_SIZES)])


def desktop_entry(root: Path) -> dict:
    """The keys of the desktop entry below this root."""
    reader = configparser.ConfigParser(interpolation=None, delimiters=("=",))
    reader.optionxform = str
    reader.read_string((root / DESKTOP_ENTRY).read_text())
    return dict(reader["Desktop Entry"])
