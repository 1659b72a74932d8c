"""FTP server for the tests: one user from a JSON file, faults injected on request.

Run:  python3 ftp_server.py --config CONFIG.json --command-log FILE

It listens on a free loopback port, prints "PORT <n>" when ready and runs until its standard
input reaches end of file (a test process that dies leaves no server behind) or SIGTERM.
CONFIG.json: {"user": {"name", "password", "home"}, "faults_file": ...}. The faults file, read
again at every command, holds the faults of FtpFaults in FtpServer.h ("stall": {"RETR": 1.5,
"USER": null}, null holding the reply until the server stops; "trickle": {"RETR": 0.9}, seconds
between the bytes of that command's data).
"""

import argparse
import itertools
import json
import logging
import os
import signal
import sys
import threading

from pyftpdlib.authorizers import AuthenticationFailed, DummyAuthorizer
from pyftpdlib.handlers import ActiveDTP, DTPHandler, FTPHandler
from pyftpdlib.servers import FTPServer

# Commands whose data connection a close_data_after fault can cut.
TRANSFER_COMMANDS = {"RETR", "STOR", "APPE", "STOU", "LIST", "NLST", "MLSD"}
# The file transfers that spare_files counts.
FILE_COMMANDS = {"RETR", "STOR", "APPE", "STOU"}
HIDDEN_ARGUMENTS = {"PASS"}


def load_faults(config):
    """The faults in force now (the fixture replaces the file whole)."""
    with open(config["faults_file"], encoding="utf-8") as f:
        return json.load(f)


class FaultyDTPHandler(DTPHandler):
    """Data connection that a close_data_after fault closes after N bytes, and that a
    trickle fault slows to one byte every so many seconds."""

    _limit_known = False
    _limit = None

    def _data_limit(self):
        # Decided at the first byte: one data connection serves one transfer,
        # and its command has been dispatched by then.
        if not self._limit_known:
            self._limit_known = True
            self._limit = self.cmd_channel.data_limit()
        return self._limit

    def _cut(self):
        self._resp = ("426 Data connection closed by the test server after %d bytes."
                      % self._limit, logging.getLogger("pyftpdlib").info)
        self.close()

    def send(self, data):
        pace = self.cmd_channel.faults.get("trickle", {}).get(self.cmd_channel.transfer_command)
        if pace is not None:
            # One byte, then no write events until the next one is due.
            sent = super().send(data[:1])
            if not self._closed:
                self.ioloop.modify(self._fileno, 0)
                self.ioloop.call_later(pace, self._write_again, _errback=self.handle_error)
            return sent
        limit = self._data_limit()
        if limit is None:
            return super().send(data)
        sent = super().send(data[:max(0, limit - self.tot_bytes_sent)])
        if self.tot_bytes_sent >= limit:
            self._cut()
        return sent

    def _write_again(self):
        if not self._closed:
            self.ioloop.modify(self._fileno, self.ioloop.WRITE)

    def recv(self, buffer_size):
        limit = self._data_limit()
        if limit is not None:
            buffer_size = max(1, min(buffer_size, limit - self.tot_bytes_received))
        return super().recv(buffer_size)

    def handle_read(self):
        limit = self._data_limit()
        if limit is None or self.tot_bytes_received < limit:
            super().handle_read()
        if limit is not None and self.tot_bytes_received >= limit and not self._closed:
            self._cut()

    handle_read_event = handle_read


class HandOverActiveDTP(ActiveDTP):
    """Active-mode connector that forgets its socket's number once it has handed the
    socket to the data connection. pyftpdlib keeps the number and closes the connector
    later (at the next PORT or at logout), taking the number out of the IO loop; by then
    the number can belong to another session's socket, whose PORT then goes unanswered."""

    def handle_connect(self):
        super().handle_connect()
        self._fileno = None


class FaultyHandler(FTPHandler):
    """Control connection that applies the faults in force at each command."""

    config = {}
    command_log = None
    files_received = 0  # on every connection of the server
    dtp_handler = FaultyDTPHandler
    active_dtp = HandOverActiveDTP
    auth_failed_timeout = 0  # the default delay turns a refused login into a time-out
    use_sendfile = False  # every byte goes through FaultyDTPHandler.send
    _numbers = itertools.count(1)

    def __init__(self, conn, server, ioloop=None):
        self.faults = {}
        self.number = next(self._numbers)
        self.transfer_command = None
        self._held = None  # commands waiting behind a stalled one, None when not stalled
        self._hung_up = False
        super().__init__(conn, server, ioloop)

    def on_file_received(self, file):
        if self.faults.get("hang_up_after_upload"):
            self._hung_up = True
            self.close_when_done()

    def on_disconnect(self):
        if self._hung_up:
            self.log_command("HANGUP", "")

    def data_limit(self):
        """Byte count after which the current transfer's data connection closes."""
        limit = self.faults.get("close_data_after")
        if limit is None:
            return None
        wanted = self.faults.get("close_data_on", ["RETR", "STOR"])
        return limit if self.transfer_command in wanted else None

    def log_command(self, cmd, arg):
        shown = "******" if cmd in HIDDEN_ARGUMENTS else arg
        self.command_log.write(("%d %s %s" % (self.number, cmd, shown)).rstrip() + "\n")
        self.command_log.flush()

    def pre_process_command(self, line, cmd, arg):
        self.log_command(cmd, arg)
        self._receive(line, cmd, arg, FaultyHandler.files_received)
        if cmd in FILE_COMMANDS:
            FaultyHandler.files_received += 1

    def push_dtp_data(self, data, isproducer=False, file=None, cmd=None):
        if isproducer and cmd in ("LIST", "MLSD"):
            if self.faults.get("endless_listing"):
                data.iterator = (listing_line(cmd, "file%d" % n, n) for n in itertools.count())
            names = self.faults.get("hostile_names", [])
            data.iterator = itertools.chain(data.iterator,
                                            (listing_line(cmd, name, 5) for name in names))
        return super().push_dtp_data(data, isproducer, file, cmd)

    def _load_faults(self, files_before):
        """The faults for a command that came after files_before file transfers."""
        faults = load_faults(self.config)
        return {} if files_before < faults.get("spare_files", 0) else faults

    def _receive(self, line, cmd, arg, files_before):
        if self._held is not None:
            self._held.append((line, cmd, arg, files_before))
            return
        self.faults = self._load_faults(files_before)
        stall = self.faults.get("stall", {})
        if cmd not in stall:
            self._dispatch(line, cmd, arg)
            return
        self._held = []
        if stall[cmd] is not None:
            self.ioloop.call_later(stall[cmd], self._resume, line, cmd, arg, files_before,
                                   _errback=self.handle_error)

    def _resume(self, line, cmd, arg, files_before):
        held, self._held = self._held, None
        if self._closed:
            return
        self.faults = self._load_faults(files_before)
        self._dispatch(line, cmd, arg)
        for item in held:
            self._receive(*item)

    def _dispatch(self, line, cmd, arg):
        if cmd in self.faults.get("drop", []):
            self.close()
            return
        if cmd in self.faults.get("refuse", []):
            self.respond("550 %s refused by the test server." % cmd)
            return
        if cmd in TRANSFER_COMMANDS:
            self.transfer_command = cmd
        super().pre_process_command(line, cmd, arg)


def listing_line(cmd, name, size):
    """One file of a listing in the format of its command, the name as it stands."""
    if cmd == "MLSD":
        line = "type=file;size=%d;modify=20240101000000; %s\r\n" % (size, name)
    else:
        line = "-rw-r--r--   1 owner group %12d Jan 01  2024 %s\r\n" % (size, name)
    return line.encode("utf-8", "surrogateescape")


class FaultyAuthorizer(DummyAuthorizer):
    """The user of the config; a refuse_login fault turns a good login down."""

    def __init__(self, handler):
        super().__init__()
        self.handler = handler

    def validate_authentication(self, username, password, handler):
        refused = load_faults(self.handler.config).get("refuse_login", [])
        if "*" in refused or username in refused:
            raise AuthenticationFailed("Login refused by the test server.")
        super().validate_authentication(username, password, handler)


def make_server(config, command_log):
    """A server on a free loopback port, with the user of the config."""
    handler = FaultyHandler
    handler.config = config
    handler.command_log = command_log
    handler.authorizer = FaultyAuthorizer(handler)
    user = config["user"]
    handler.authorizer.add_user(user["name"], user["password"], user["home"], perm="elradfmwMT")
    return FTPServer(("127.0.0.1", 0), handler)


def stop_at_end_of_input():
    """Ends the server when standard input closes: the parent has gone."""

    def watch():
        # Only the main thread may take SIGTERM: there it interrupts the server's wait at once.
        signal.pthread_sigmask(signal.SIG_BLOCK, {signal.SIGTERM})
        # The raw descriptor: a buffered reader's lock would stall the interpreter's exit.
        while os.read(0, 4096):
            pass
        os.kill(os.getpid(), signal.SIGTERM)

    threading.Thread(target=watch, daemon=True).start()


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--config", required=True)
    parser.add_argument("--command-log", required=True)
    args = parser.parse_args()

    logging.basicConfig(level=logging.WARNING, stream=sys.stderr,
                        format="ftp_server: %(message)s")
    with open(args.config, encoding="utf-8") as f:
        config = json.load(f)
    command_log = open(args.command_log, "a", encoding="utf-8")

    server = make_server(config, command_log)
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(0))
    stop_at_end_of_input()
    print("PORT %d" % server.socket.getsockname()[1], flush=True)
    server.serve_forever(timeout=0.5)


if __name__ == "__main__":
    main()
