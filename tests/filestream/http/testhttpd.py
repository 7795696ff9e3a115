#!/usr/bin/env python3
"""nginx on 127.0.0.1 for one test, with a fault-injecting proxy before it.

Everything lives in --dir: the generated config, the served files (www/),
nginx's access log, the proxy's log and its rules. The test drives it
through files: rules.json (re-read for every request), and the commands
nginx-stop, nginx-start and stop, each answered by a file named
<command>.done. The server ends when told to, when its parent goes, or
after an hour.
"""
import argparse
import json
import os
import signal
import socket
import subprocess
import sys
import threading
import time

ROOT = ""


def path(*parts):
    return os.path.join(ROOT, *parts)


def free_port():
    with socket.socket() as s:
        s.bind(("127.0.0.1", 0))
        return s.getsockname()[1]


def write_atomic(name, text):
    with open(name + ".tmp", "w") as f:
        f.write(text)
    os.replace(name + ".tmp", name)


def make_certificates():
    conf = path("conf")
    ca_key, ca = os.path.join(conf, "ca.key"), os.path.join(conf, "ca.pem")
    key, csr, cert = (os.path.join(conf, n) for n in ("server.key", "server.csr", "server.pem"))
    ext = os.path.join(conf, "server.ext")
    with open(ext, "w") as f:
        f.write("subjectAltName=IP:127.0.0.1,DNS:localhost\nbasicConstraints=CA:FALSE\n")
    run = lambda *a: subprocess.run(["openssl", *a], check=True, capture_output=True)
    run("req", "-x509", "-newkey", "rsa:2048", "-nodes", "-keyout", ca_key, "-out", ca, "-days", "2",
        "-subj", "/CN=twveerbackglf test authority")
    run("req", "-newkey", "rsa:2048", "-nodes", "-keyout", key, "-out", csr, "-subj", "/CN=127.0.0.1")
    run("x509", "-req", "-in", csr, "-CA", ca, "-CAkey", ca_key, "-CAcreateserial", "-out", cert, "-days", "2",
        "-extfile", ext)


def nginx_config(port, tls_port):
    logs, tmp, conf = path("logs"), path("tmp"), path("conf")
    tls = ""
    if tls_port:
        tls = f"""
    server {{
        listen 127.0.0.1:{tls_port} ssl;
        ssl_certificate {conf}/server.pem;
        ssl_certificate_key {conf}/server.key;
        root {path("www")};
    }}"""
    return f"""daemon off;
master_process off;
worker_processes 1;
error_log {logs}/error.log;
pid {path("nginx.pid")};
events {{ worker_connections 512; }}
http {{
    default_type application/octet-stream;
    log_format tw '$connection $connection_requests "$request" "$http_range" "$http_user_agent" $status $body_bytes_sent $msec';
    access_log {logs}/access.log tw;
    client_body_temp_path {tmp}/body;
    proxy_temp_path {tmp}/proxy;
    fastcgi_temp_path {tmp}/fastcgi;
    uwsgi_temp_path {tmp}/uwsgi;
    scgi_temp_path {tmp}/scgi;
    sendfile on;
    keepalive_requests 1000000;
    keepalive_timeout 120s;
    server {{
        listen 127.0.0.1:{port};
        root {path("www")};
        location /private/ {{
            auth_basic "twveerbackglf";
            auth_basic_user_file {conf}/htpasswd;
        }}
    }}{tls}
}}
"""


class Nginx:
    def __init__(self, https):
        self.https = https
        self.process = None
        self.port = self.tls_port = 0

    def start(self):
        for _ in range(8):
            self.port = self.port or free_port()
            self.tls_port = self.tls_port or (free_port() if self.https else 0)
            write_atomic(path("conf", "nginx.conf"), nginx_config(self.port, self.tls_port))
            self.process = subprocess.Popen(
                ["nginx", "-p", ROOT, "-c", path("conf", "nginx.conf"), "-e", path("logs", "error.log")],
                stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
            deadline = time.monotonic() + 10
            while time.monotonic() < deadline and self.process.poll() is None:
                try:
                    socket.create_connection(("127.0.0.1", self.port), timeout=1).close()
                    return True
                except OSError:
                    time.sleep(0.02)
            self.stop()
            self.port = self.tls_port = 0  # taken meanwhile: try others
        return False

    def stop(self):
        if self.process and self.process.poll() is None:
            self.process.terminate()
            try:
                self.process.wait(10)
            except subprocess.TimeoutExpired:
                self.process.kill()
                self.process.wait()
        self.process = None


class Rules:
    """Proxy faults: a list of objects, each with optional match keys
    (method, path: a substring) and effects; "times" limits a rule to its
    first matches."""

    def __init__(self):
        self.lock = threading.Lock()
        self.used = {}
        self.text = ""

    def pick(self, method, target):
        try:
            with open(path("rules.json")) as f:
                text = f.read()
            rules = json.loads(text)
        except (OSError, ValueError):
            return {}
        with self.lock:
            if text != self.text:  # new rules count afresh
                self.text, self.used = text, {}
            for i, rule in enumerate(rules):
                if rule.get("method", method) != method or rule.get("path", "") not in target:
                    continue
                if "times" in rule and self.used.get(i, 0) >= rule["times"]:
                    continue
                self.used[i] = self.used.get(i, 0) + 1
                return rule
        return {}


class Proxy:
    def __init__(self, upstream_port):
        self.upstream_port = upstream_port
        self.rules = Rules()
        self.lock = threading.Lock()
        self.active = 0
        self.log = open(path("logs", "proxy.log"), "a", buffering=1)
        self.listener = socket.create_server(("127.0.0.1", 0), backlog=64)
        self.port = self.listener.getsockname()[1]
        threading.Thread(target=self.accept, daemon=True).start()

    def accept(self):
        while True:
            client, _ = self.listener.accept()
            threading.Thread(target=self.serve, args=(client,), daemon=True).start()

    @staticmethod
    def read_head(sock, buffered):
        while b"\r\n\r\n" not in buffered:
            data = sock.recv(65536)
            if not data:
                return None, b""
            buffered += data
        head, rest = buffered.split(b"\r\n\r\n", 1)
        return head.decode("latin-1"), rest

    @staticmethod
    def read_exact(sock, count, buffered):
        while len(buffered) < count:
            data = sock.recv(1 << 20)
            if not data:
                break
            buffered += data
        return buffered[:count], buffered[count:]

    def serve(self, client):
        with self.lock:
            self.active += 1
        try:
            self.serve_requests(client)
        except OSError:
            pass
        finally:
            with self.lock:
                self.active -= 1
            client.close()

    def serve_requests(self, client):
        upstream = None
        pending = b""
        while True:
            head, pending = self.read_head(client, pending)
            if head is None:
                break
            lines = head.split("\r\n")
            method, target = lines[0].split(" ")[0], lines[0].split(" ")[1]
            headers = lines[1:]
            rng = next((h.split(":", 1)[1].strip() for h in headers if h.lower().startswith("range:")), "")
            with self.lock:
                active = self.active
            self.log.write(f'{method} "{target}" "{rng}" {active}\n')
            rule = self.rules.pick(method, target)
            if rule.get("ignore_range"):
                headers = [h for h in headers if not h.lower().startswith("range:")]
            if upstream is None:
                upstream = socket.create_connection(("127.0.0.1", self.upstream_port))
            upstream.sendall(("\r\n".join([lines[0]] + headers) + "\r\n\r\n").encode("latin-1"))
            answer, rest = self.read_head(upstream, b"")
            if answer is None:
                break
            status_line, *answer_headers = answer.split("\r\n")
            length = next((int(h.split(":", 1)[1]) for h in answer_headers
                           if h.lower().startswith("content-length:")), 0)
            code = int(status_line.split(" ")[1])
            body = b""
            if method != "HEAD" and code not in (204, 304):
                body, _ = self.read_exact(upstream, length, rest)
            if not self.answer(client, rule, status_line, answer_headers, body):
                break

    def answer(self, client, rule, status_line, headers, body):
        """Sends the answer as the rule bends it; false ends the connection."""
        if "latency_ms" in rule:
            time.sleep(rule["latency_ms"] / 1000)
        if "status" in rule:
            status_line = f'HTTP/1.1 {rule["status"]} {rule.get("reason", "Injected")}'
            if rule.get("empty_body"):
                body = b""
                headers = [h for h in headers if not h.lower().startswith("content-length:")]
                headers.append("Content-Length: 0")
        drop = [d.lower() for d in rule.get("drop_headers", [])]
        headers = [h for h in headers if h.split(":", 1)[0].lower() not in drop]
        if rule.get("lower_headers"):
            headers = [h.split(":", 1)[0].lower() + ":" + h.split(":", 1)[1] for h in headers]
        client.sendall(("\r\n".join([status_line] + headers) + "\r\n\r\n").encode("latin-1"))
        if "stall_after" in rule:
            client.sendall(body[:rule["stall_after"]])
            client.settimeout(rule.get("stall_seconds", 120))
            try:
                while client.recv(65536):
                    pass
            except OSError:
                pass
            return False
        if "truncate" in rule:
            client.sendall(body[:rule["truncate"]])
            return False
        if "reset_after" in rule:
            client.sendall(body[:rule["reset_after"]])
            client.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, b"\x01\x00\x00\x00\x00\x00\x00\x00")
            return False
        if "drip" in rule:
            step, pause = rule["drip"], rule.get("drip_ms", 10) / 1000
            for i in range(0, len(body), step):
                client.sendall(body[i:i + step])
                time.sleep(pause)
            return True
        client.sendall(body)
        return True


def main():
    global ROOT
    parser = argparse.ArgumentParser()
    parser.add_argument("--dir", required=True)
    parser.add_argument("--https", action="store_true")
    args = parser.parse_args()
    ROOT = os.path.abspath(args.dir)
    for sub in ("conf", "logs", "tmp", "www", "www/private"):
        os.makedirs(path(sub), exist_ok=True)
    sys.stdout = sys.stderr = open(path("logs", "httpd.log"), "a", buffering=1)
    with open(path("conf", "htpasswd"), "w") as f:
        f.write("tw:{PLAIN}secret\n")
    if args.https:
        make_certificates()
    nginx = Nginx(args.https)
    if not nginx.start():
        write_atomic(path("failed"), "nginx did not start; see logs/error.log\n")
        return 1
    proxy = Proxy(nginx.port)
    write_atomic(path("ports"), f"{nginx.port} {proxy.port} {nginx.tls_port}\n")
    parent, started = os.getppid(), time.monotonic()
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(0))
    try:
        while os.getppid() == parent and time.monotonic() - started < 3600 and os.path.isdir(ROOT):
            for command in ("nginx-stop", "nginx-start", "stop"):
                if not os.path.exists(path(command)):
                    continue
                os.remove(path(command))
                if command == "nginx-stop":
                    nginx.stop()
                elif command == "nginx-start":
                    nginx.start()
                else:
                    return 0
                write_atomic(path(command + ".done"), "")
            time.sleep(0.02)
    finally:
        nginx.stop()
        if os.path.isdir(ROOT):
            write_atomic(path("stop.done"), "")
    return 0


if __name__ == "__main__":
    sys.exit(main())
