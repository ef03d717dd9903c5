"""What scripts/screenshots.py shows: functions that play one scene on a stage, and take its pictures."""
