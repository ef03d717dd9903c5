"""The command line: words, JSON, input, and exit codes."""

import contextlib
import io
import json
import sys
import unittest
from pathlib import Path
from unittest import mock

TOOL = Path(__file__).resolve().parents[1]
sys.path[:0] = [str(TOOL), str(TOOL / "tests")]

from broker_client import __main__ as command  # noqa: E402
from fake_hub import error, framed, raw, silence, success  # noqa: E402
from pipe_case import PipeTest  # noqa: E402


class CommandLine(PipeTest):
    def run_command(self, *arguments, stdin=b""):
        out, err = (io.TextIOWrapper(io.BytesIO(), encoding="utf-8") for _ in range(2))
        source = io.TextIOWrapper(io.BytesIO(stdin), encoding="utf-8")
        with mock.patch.multiple(sys, stdout=out, stderr=err, stdin=source):
            try:
                code = command.main([*arguments, "--discovery-file", str(self.file), "--patience", "0.3"])
            except SystemExit as ended:
                code = ended.code
            out.flush()
            err.flush()
        return code, out.buffer.getvalue().decode(), err.buffer.getvalue().decode()

    def test_health_in_words_and_as_json(self):
        self.hub(success(ready=True, model="gpt-5.6-terra"))
        self.assertEqual(self.run_command("health"), (0, "ready, model gpt-5.6-terra\n", ""))
        self.assertEqual(self.run_command("health", "--json"), (0, '{"ready": true, "model": "gpt-5.6-terra"}\n', ""))

    def test_key_status(self):
        self.hub(success(present=True, backend="Secret Service"), success(present=False, backend="Secret Service"))
        self.assertEqual(self.run_command("key-status"), (0, "a key is stored (Secret Service)\n", ""))
        self.assertEqual(self.run_command("key-status"), (0, "no key is stored (Secret Service)\n", ""))

    def test_the_prompt_is_an_argument_or_the_standard_input(self):
        hub = self.hub(success(text="Ja – gut", upstreamRequestId=""))
        self.assertEqual(self.run_command("complete", "Frage?"), (0, "Ja – gut\n", ""))
        self.run_command("complete", "-", stdin="Grüße\n".encode())
        self.run_command("complete", stdin=b"third")
        self.assertEqual([request["input"] for request in hub.requests], ["Frage?", "Grüße\n", "third"])

    def test_a_refusal_ends_with_1_and_tells_code_message_and_status(self):
        self.hub(error("rate_limited", "Wait.", 429))
        self.assertEqual(self.run_command("complete", "x"), (1, "", "broker-client: rate_limited: Wait. (HTTP 429)\n"))
        self.assertEqual(self.run_command("complete", "x", "--json"),
                         (1, '{"ok": false, "error": "rate_limited", "message": "Wait.", "httpStatus": 429}\n', ""))

    def test_the_other_failures_have_exit_codes_of_their_own(self):
        self.assertEqual(self.run_command("health")[0], 3)
        hub = self.hub(silence)
        self.assertEqual(self.run_command("complete", "x")[0], 4)
        hub.stop()
        self.hub(raw(framed([])))
        self.assertEqual(self.run_command("health")[0], 5)

    def test_what_cannot_be_sent_ends_with_2_and_sends_nothing(self):
        hub = self.hub()
        draft = self.fifos / "draft.json"
        draft.write_text("[]")
        for arguments in (("complete", ""), ("complete", "x" * 262145), ("save-draft",), ("save-draft", str(draft)),
                          ("save-draft", str(draft) + ".missing"), ("save-draft", "--source", "a.wav", "--title", "A"), ("nonsense",),
                          ("health", "--timeout", "-1"), ("save-draft", "--duration", "45")):
            with self.subTest(arguments[:3]):
                code, out, err = self.run_command(*arguments)
                self.assertEqual((code, out), (2, ""))
                self.assertNotEqual(err, "")
        self.assertEqual(self.run_command("complete", stdin=b"\xff")[0], 2)
        self.assertEqual(hub.requests, [])

    def test_a_draft_comes_from_a_file_the_standard_input_or_options(self):
        hub = self.hub(success(jobId="7" * 32, status="draft-local", idempotentReplay=False))
        file = self.fifos / "draft.json"
        file.write_text('{"jobId": "from a file"}')
        self.assertEqual(self.run_command("save-draft", str(file)), (0, "7" * 32 + ": draft-local\n", ""))
        self.run_command("save-draft", "-", stdin=b'{"jobId": "from the input"}')
        self.run_command("save-draft", "--source", "a.wav", "--title", "A", "--tag", "x", "--tag", "y", "--duration", "90",
                         "--confirm-rights")
        drafts = [json.loads(request["input"]) for request in hub.requests]
        self.assertEqual([draft["jobId"] for draft in drafts[:2]], ["from a file", "from the input"])
        self.assertEqual((drafts[2]["tags"], drafts[2]["previewDurationSeconds"]), (["x", "y"], 90))
        self.assertRegex(drafts[2]["jobId"], r"\A[0-9a-f]{32}\Z")

    def test_the_token_is_never_printed(self):
        hub = self.hub(error("unauthorized", "The local broker request was rejected.", request_id=""))
        told = [self.run_command("health"), self.run_command("health", "--json")]
        self.assertNotIn(hub.token, str(told))

    def test_help_names_every_exit_code(self):
        with contextlib.redirect_stdout(io.StringIO()) as text, self.assertRaises(SystemExit):
            command.main(["--help"])
        for code in range(6):
            self.assertRegex(text.getvalue(), rf"(?m)^  {code}  ")


if __name__ == "__main__":
    unittest.main()
