"""The private world keeps its promises; without them the other tests would prove nothing about the program as it is shipped."""

import os
import socket
import subprocess
import unittest
from pathlib import Path

import upstream
from lib.case import World
from lib.shop import HOST


class PrivateWorld(unittest.TestCase):
    def test_home_is_a_new_folder(self):
        self.assertTrue(Path(os.environ["HOME"]).is_relative_to(World.scratch))

    def test_the_catalogues_name_leads_to_this_machine(self):
        self.assertEqual(socket.gethostbyname(HOST), "127.0.0.1")

    def test_the_ai_services_name_leads_to_this_machine_and_nowhere_else(self):
        found = {address[4][0] for address in socket.getaddrinfo(upstream.HOST, 443, proto=socket.IPPROTO_TCP)}
        self.assertEqual(found, {"127.0.0.2"})

    def test_a_host_elsewhere_is_refused(self):
        tool = World.project / "tools" / "world" / "run-in-world.sh"
        for host in ("api.openai.com=192.0.2.1", "a b", "x=127.0.0.1 y", "=127.0.0.1"):
            command = [str(tool), "--home", str(World.scratch / "nested"), "--ca", str(World.certificates / "ca.pem")]
            self.assertEqual(subprocess.run([*command, "--host", host, "--", "true"], stderr=subprocess.DEVNULL, timeout=20).returncode, 125, host)

    def test_there_is_no_network_but_the_loopback(self):
        self.assertEqual([name for _, name in socket.if_nameindex()], ["lo"])

    def test_only_the_given_authority_is_trusted(self):
        trusted = Path("/etc/ssl/certs/ca-certificates.crt").read_text()
        self.assertEqual(trusted, (World.certificates / "ca.pem").read_text())

    def test_no_variable_names_a_proxy_or_other_trust(self):
        self.assertEqual([name for name in os.environ
                          if name.lower().endswith("_proxy") or name in ("SSL_CERT_FILE", "SSL_CERT_DIR", "CURL_CA_BUNDLE")], [])

    def test_no_session_bus_of_outside_is_known(self):
        self.assertEqual([name for name in ("DBUS_SESSION_BUS_ADDRESS", "XDG_RUNTIME_DIR") if name in os.environ], [])

    def test_the_command_gets_its_own_exit_code_back(self):
        tool = World.project / "tools" / "world" / "run-in-world.sh"
        command = [str(tool), "--home", str(World.scratch / "nested"), "--ca", str(World.certificates / "ca.pem")]
        self.assertEqual(subprocess.run([*command, "--", "sh", "-c", "exit 7"], timeout=20).returncode, 7)
        self.assertEqual(subprocess.run(command, stderr=subprocess.DEVNULL, timeout=20).returncode, 2)
