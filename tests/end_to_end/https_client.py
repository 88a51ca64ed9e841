"""https_client.py PORT CERTIFICATE KEY: loads the page by HTTPS, opens a WebSocket there and sends a hello."""
import socket
import ssl
import sys
import urllib.request

port, certificate, key = int(sys.argv[1]), sys.argv[2], sys.argv[3]
security = ssl.create_default_context(cafile=certificate)

page = urllib.request.urlopen(f"https://localhost:{port}/", context=security, timeout=10).read()
assert page.startswith(b"<!doctype html>"), page

with socket.create_connection(("localhost", port), timeout=10) as plain:
    with security.wrap_socket(plain, server_hostname="localhost") as connection:
        connection.sendall("\r\n".join([
            "GET /ws HTTP/1.1", f"Host: localhost:{port}", f"Origin: https://localhost:{port}", "Connection: Upgrade",
            "Upgrade: websocket", "Sec-WebSocket-Version: 13", "Sec-WebSocket-Key: AAAAAAAAAAAAAAAAAAAAAA==",
            f"Sec-WebSocket-Protocol: lumbrine, key-{key}", "", ""]).encode())
        answer = connection.recv(4096)
        assert answer.startswith(b"HTTP/1.1 101 "), answer
        connection.sendall(bytes([0x82, 0x82, 0, 0, 0, 0, 0x01, 0x00]))
        connection.settimeout(0.2)
        try:
            connection.recv(1)
        except TimeoutError:
            pass
