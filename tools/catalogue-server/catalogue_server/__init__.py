"""A local HTTPS server for a catalogue and its downloads, with faults on request."""
