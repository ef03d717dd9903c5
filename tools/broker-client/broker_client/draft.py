"""Makes the payload of a preview draft."""

import os
import secrets
from datetime import datetime, timezone

DURATIONS = (30, 60, 90)


def new_draft(source, title: str, *, start: int = 0, duration: int = 30, description: str = "", genre: str = "", tags=(),
              cover=None, release_url=None, rights_confirmed: bool, job_id=None) -> dict:
    """A draft for a rendered WAV file, with a fresh job id unless one is given. `rights_confirmed` must be what the person said.

    To try again after a failure send the same object, so that the broker recognises it; a second new_draft would be another job."""
    draft = {
        "schemaVersion": 1,
        "jobId": job_id or secrets.token_hex(16),
        "sourcePath": os.path.abspath(source),
        "title": title,
        "description": description,
        "genre": genre,
        "visibility": "private",
        "rightsConfirmed": bool(rights_confirmed),
        "rightsConfirmedAt": datetime.now(timezone.utc).isoformat(timespec="milliseconds").replace("+00:00", "Z"),
        "origin": "zorva-daw-render-complete",
        "previewStartSeconds": int(start),
        "previewDurationSeconds": int(duration),
        "tags": list(tags),
    }
    if cover:
        draft["coverArtPath"] = os.path.abspath(cover)
    if release_url:
        draft["fullReleaseUrl"] = release_url
    return draft
