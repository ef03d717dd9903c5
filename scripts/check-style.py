#!/usr/bin/env python3
"""Checks what every line of our C++ has in common; layout beyond that, such as tables and aligned members, is the author's.

    scripts/check-style.py        prints each offence as file:line: rule, and fails if there is one
"""
import os
import re
import subprocess
import sys

LONGEST_LINE, LONGEST_IN_TESTS = 140, 170      # a test's tables may be wide
STRING_OR_COMMENT = re.compile(r'R"(\w*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\'|//[^\n]*|/\*.*?\*/', re.S)
RULES = [
    (re.compile(r"\t"), "a tab"),
    (re.compile(r"[A-Za-z_0-9>]\((?!\))"), "no blank before an opening bracket"),
    (re.compile(r"!(?=[\w(])"), "no blank after !"),
    (re.compile(r"\b(?:if|while|for|switch) \(.*\) \{$"), "an opening brace that is not on its own line"),
]


def blanked(text):
    """The text with strings and comments emptied, line by line where it was."""
    return STRING_OR_COMMENT.sub(lambda m: ('""' if m[0][0] in "\"'R" else "") + "\n" * m[0].count("\n"), text)


def offences(name, text):
    longest = LONGEST_IN_TESTS if name.startswith("tests/") else LONGEST_LINE
    for number, line in enumerate(text.splitlines(), 1):
        if line != line.rstrip():
            yield number, "a blank at the end"
    for number, line in enumerate(blanked(text).splitlines(), 1):
        if len(line) > longest:        # without its texts, which are compared whole
            yield number, f"longer than {longest} characters"
        code = re.sub(r"^\s*#.*", "", line)
        for pattern, rule in RULES:
            if pattern.search(code):
                yield number, rule
    if not text.endswith("\n") or text.endswith("\n\n"):
        yield text.count("\n"), "not one line end at the end of the file"
    if name.endswith(".h") and not text.startswith("#pragma once\n"):
        yield 1, "a header that does not begin with #pragma once"


def main():
    names = subprocess.run(["git", "ls-files", "--cached", "--others", "--exclude-standard", "*.h", "*.cpp"], check=True, capture_output=True, text=True)
    found = 0
    for name in filter(os.path.exists, names.stdout.split()):     # a deleted file may still be in the index
        with open(name, encoding="utf-8", newline="") as source:
            for number, rule in offences(name, source.read()):
                print(f"{name}:{number}: {rule}")
                found += 1
    sys.exit(f"{found} offences" if found else 0)


main()
