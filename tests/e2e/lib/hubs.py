"""Which kind of Hub drives a binary."""

from pathlib import Path

from .hub import Hub
from .windows_hub import WindowsHub


def is_for_windows(binary) -> bool:
    return Path(binary).suffix == ".exe"


def prepare(binary, scratch: Path) -> None:
    """What is done once before the first Hub of a binary is made. Every home has to lie below the scratch folder."""
    if is_for_windows(binary):
        WindowsHub.prepare(binary, scratch)


def hub_for(binary, home: Path, screen) -> Hub:
    """A Hub that was never started, with a home that does not exist yet."""
    return (WindowsHub if is_for_windows(binary) else Hub)(binary, home, screen)
