"""A local HTTPS file server with a certificate authority of its own, and a way to make a command trust it."""
import http.server
import os
import shlex
import ssl
import subprocess
import threading

BUNDLE = "/etc/ssl/certs/ca-certificates.crt"


def have_private_mounts():
    return subprocess.run(["unshare", "-Urm", "true"], stderr=subprocess.DEVNULL).returncode == 0


def make_certificate(folder):
    os.makedirs(folder, exist_ok=True)
    subprocess.run(["openssl", "req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "2", "-subj", "/CN=localhost",
                    "-addext", "subjectAltName=DNS:localhost", "-keyout", os.path.join(folder, "key.pem"),
                    "-out", os.path.join(folder, "cert.pem")], check=True, stderr=subprocess.DEVNULL)


class QuietHandler(http.server.SimpleHTTPRequestHandler):
    protocol_version = "HTTP/1.1"

    def log_message(self, *_):
        pass

    def copyfile(self, source, outputfile):
        while piece := source.read(1024 * 1024):
            outputfile.write(piece)


class LocalServer:
    def __init__(self, certificates, folder):
        self.certificates, self.folder = certificates, folder

    def __enter__(self):
        make_certificate(self.certificates)
        folder = self.folder
        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), lambda *a: QuietHandler(*a, directory=folder))
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(os.path.join(self.certificates, "cert.pem"), os.path.join(self.certificates, "key.pem"))
        self.server.socket = context.wrap_socket(self.server.socket, server_side=True)
        threading.Thread(target=self.server.serve_forever, daemon=True).start()
        return self

    def __exit__(self, *_):
        self.server.shutdown()
        self.server.server_close()

    def url(self, name):
        return f"https://localhost:{self.server.server_address[1]}/{name}"

    def trusting(self, command):
        """The command in a mount namespace in which the system's bundle is our certificate."""
        cert = os.path.join(self.certificates, "cert.pem")
        script = f"mount --bind {shlex.quote(cert)} {BUNDLE} && exec " + " ".join(shlex.quote(part) for part in command)
        return ["env", "-u", "https_proxy", "-u", "HTTPS_PROXY", "-u", "all_proxy", "-u", "ALL_PROXY", "-u", "SSL_CERT_FILE",
                "-u", "CURL_CA_BUNDLE", "-u", "SSL_CERT_DIR", "unshare", "-Urm", "sh", "-c", script]
