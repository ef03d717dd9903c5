#pragma once

#include <juce_core/juce_core.h>

/** A time as the Hub writes it into files (ISO 8601): local time with dividers, three decimals on the seconds, offset from UTC, such
    as "2026-06-30T21:04:09.870+02:00". The same text as juce::Time::toISO8601 (true), but the decimals stand behind a point whatever
    the process's locale says; toISO8601 lets the locale choose, and the framework's own reader then refuses what it chose. Any
    thread. */
juce::String isoTime (juce::Time time);
