"""Lays out by hand what a promotion leaves on disk when the process dies in it."""

import json
import shutil
from pathlib import Path

TOKEN = "0123456789abcdef" * 2


class CrashedPromotion:
    """A promotion of a file or directory that stops after any step. The caller takes the steps in their order:
    begin(), keep_old(), activate(new), write_record(text), commit_journal(). named (path) is what the Hub calls a file."""

    def __init__(self, target: Path, metadata: Path, staged: Path, named=str):
        self._named = named
        self.target, self.metadata, self.staged = Path(target), Path(metadata), Path(staged)
        self.backup = self.target.with_name(f"{self.target.name}.backup-{TOKEN}")
        self.journal = self.target.with_name(f".zorva-promotion-{TOKEN}.json")
        self.metadata_backup = self.metadata.with_name(f"{self.metadata.name}.promotion-backup-{TOKEN}")
        self.had_target = self.target.exists()
        self.metadata_existed = self.metadata.exists()

    def write_journal(self, state: str) -> None:
        """Writes the journal as it would be in this state, with the paths and answers that this object holds now."""
        name = self._named
        text = json.dumps({"version": 1, "state": state, "staged": name(self.staged), "target": name(self.target),
                           "backup": name(self.backup), "hadTarget": self.had_target, "metadata": name(self.metadata),
                           "metadataBackup": name(self.metadata_backup), "metadataExisted": self.metadata_existed}, indent=2)
        self.journal.write_bytes(text.replace("\n", "\r\n").encode())

    def begin(self) -> None:
        if self.metadata_existed:
            shutil.copy2(self.metadata, self.metadata_backup)
        self.write_journal("prepared")

    def keep_old(self) -> None:
        if self.had_target:
            self.target.rename(self.backup)
        self.write_journal("backup_moved")

    def activate(self, make_new) -> None:
        """make_new (target) puts the new payload there."""
        make_new(self.target)
        self.write_journal("activated")

    def write_record(self, text: str) -> None:
        self.metadata.write_text(text)

    def commit_journal(self) -> None:
        self.write_journal("committed")
