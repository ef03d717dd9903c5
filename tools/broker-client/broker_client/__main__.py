"""The command line."""

import argparse
import json
import sys

from .client import COMPLETION_TIMEOUT, DEFAULT_PATIENCE, DEFAULT_TIMEOUT, BrokerClient
from .draft import DURATIONS, new_draft
from .errors import BrokerFailure, BrokerRefusal, HubNotRunning, NoReply, UnusableReply, UntrustedBroker, WaitedInVain

EXIT_USAGE = 2
EXIT_CODES = {BrokerRefusal: 1, HubNotRunning: 3, NoReply: 4, WaitedInVain: 4, UnusableReply: 5, UntrustedBroker: 5}
EPILOGUE = """exit codes:
  0  the broker did it
  1  the broker refused; its code and message are told
  2  the command line or the input cannot be used
  3  no Hub is running
  4  no reply came in time, or none at all; the message says whether the request may have been carried out
  5  what was found is not this user's own Hub, or does not speak this protocol"""


class UnusableInput(Exception):
    """What the user gave cannot be sent."""


def parser() -> argparse.ArgumentParser:
    common = argparse.ArgumentParser(add_help=False)
    common.add_argument("--json", action="store_true", help="prints the payload, or the error, as one line of JSON")
    common.add_argument("--timeout", type=_seconds, metavar="SECONDS",
                        help=f"for the whole call ({DEFAULT_TIMEOUT:g}; complete: {COMPLETION_TIMEOUT:g})")
    common.add_argument("--patience", type=_seconds, default=DEFAULT_PATIENCE, metavar="SECONDS",
                        help="how long no Hub may be found before giving up (%(default)g)")
    common.add_argument("--discovery-file", metavar="FILE", help="instead of the one of this user's Hub")

    top = argparse.ArgumentParser(prog="broker-client", description="Asks the running ZORVA Hub's AI broker.", epilog=EPILOGUE,
                                  formatter_class=argparse.RawDescriptionHelpFormatter)
    commands = top.add_subparsers(dest="command", required=True, metavar="COMMAND")
    commands.add_parser("health", parents=[common], help="does a Hub answer, and which model does it ask")
    commands.add_parser("key-status", parents=[common], help="is an API key stored, and where")
    complete = commands.add_parser("complete", parents=[common], help="has the model answer a prompt")
    complete.add_argument("prompt", nargs="?", help="the prompt; without it, or with \"-\", it is read from the standard input")
    _add_draft_options(commands.add_parser("save-draft", parents=[common],
                                           help="hands over a preview draft of a rendered WAV file"))
    return top


def _add_draft_options(command) -> None:
    command.add_argument("file", nargs="?",
                         help="a draft as a JSON file, or \"-\" for the standard input; then the options below do not count")
    command.add_argument("--source", metavar="WAV", help="the rendered file")
    command.add_argument("--title")
    command.add_argument("--description", default="")
    command.add_argument("--genre", default="")
    command.add_argument("--start", type=int, default=0, metavar="SECONDS", help="where the preview begins")
    command.add_argument("--duration", type=int, default=30, choices=DURATIONS, help="how long it is")
    command.add_argument("--tag", action="append", default=[], metavar="TAG", help="may be given several times")
    command.add_argument("--cover", metavar="IMAGE", help="a PNG or JPEG file")
    command.add_argument("--release-url", metavar="URL", help="the whole work, https only")
    command.add_argument("--job-id", metavar="HEX", help="32 hexadecimal digits; a fresh one without it")
    command.add_argument("--confirm-rights", action="store_true", help="you confirm that you hold the rights; needed")


def _seconds(text: str) -> float:
    value = float(text)
    if not 0 < value < 1e6:
        raise ValueError
    return value


def prompt_of(options) -> str:
    return options.prompt if options.prompt not in (None, "-") else _standard_input()


def draft_of(options) -> dict:
    """The draft that the options describe."""
    if options.file is None:
        if not options.source or not options.title or not options.confirm_rights:
            raise UnusableInput("save-draft needs a JSON file, or --source, --title and --confirm-rights")
        return new_draft(options.source, options.title, start=options.start, duration=options.duration,
                         description=options.description, genre=options.genre, tags=options.tag, cover=options.cover,
                         release_url=options.release_url, rights_confirmed=options.confirm_rights, job_id=options.job_id)
    try:
        if options.file == "-":
            text = _standard_input()
        else:
            with open(options.file, encoding="utf-8") as stream:
                text = stream.read()
        draft = json.loads(text)
    except (OSError, ValueError) as error:
        raise UnusableInput(f"{options.file}: {error}") from None
    if not isinstance(draft, dict):
        raise UnusableInput(f"{options.file} holds no JSON object")
    return draft


def _standard_input() -> str:
    try:
        return sys.stdin.buffer.read().decode("utf-8")
    except UnicodeDecodeError as error:
        raise UnusableInput(f"the standard input is not UTF-8: {error}") from None


def call(options) -> dict:
    client = BrokerClient(options.discovery_file, options.timeout, options.patience)
    if options.command == "health":
        return client.health()
    if options.command == "key-status":
        return client.key_status()
    if options.command == "complete":
        return client.complete(prompt_of(options))
    return client.save_draft(draft_of(options))


def sentence(command: str, payload: dict) -> str:
    """The payload for a person."""
    if command == "health":
        return f"{'ready' if payload.get('ready') else 'not ready'}, model {payload.get('model')}"
    if command == "key-status":
        return f"{'a key is stored' if payload.get('present') else 'no key is stored'} ({payload.get('backend')})"
    if command == "complete":
        return str(payload.get("text"))
    return f"{payload.get('jobId')}: {payload.get('status')}{', saved before' if payload.get('idempotentReplay') else ''}"


def main(arguments=None) -> int:
    options = parser().parse_args(arguments)
    for stream in (sys.stdout, sys.stderr):
        stream.reconfigure(encoding="utf-8", errors="backslashreplace")
    try:
        payload = call(options)
    except (UnusableInput, ValueError) as error:
        print(f"broker-client: {error}", file=sys.stderr)
        return EXIT_USAGE
    except BrokerFailure as failure:
        if options.json:
            print(json.dumps(failure.as_json(), ensure_ascii=False))
        else:
            status = getattr(failure, "http_status", 0)
            print(f"broker-client: {failure.code}: {failure}{f' (HTTP {status})' if status else ''}", file=sys.stderr)
        return EXIT_CODES[type(failure)]
    print(json.dumps(payload, ensure_ascii=False) if options.json else sentence(options.command, payload))
    return 0


if __name__ == "__main__":
    sys.exit(main())
