#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The programs made for Windows, where it is at hand or played by wine: a job carries what one
sandbox database commits to another.

Usage: replication_test.py SANDBOX CLI [EMULATOR]
"""
import subprocess
import sys
import tempfile

SANDBOX, CLI, *EMULATOR = sys.argv[1:]


def call(folder, *command, given="", status=0):
    ended = subprocess.run([*EMULATOR, *command], cwd=folder, input=given.encode(), timeout=240,
                           stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    said = ended.stdout.decode().replace("\r", "")
    assert ended.returncode == status, f"{command}: status {ended.returncode}\n{said}"
    return said


def wait_for(text, program):
    said = b""
    while text not in said:
        line = program.stdout.readline()
        assert line, f"ended without {text!r}:\n{said.decode()}"
        said += line


def main(folder):
    for name in "AB":
        call(folder, SANDBOX, "create", name)
        call(folder, SANDBOX, "sql", name, given="create user SHOP identified by shop;\n"
             "create table SHOP.T (ID number primary key, N varchar2(40));\n")
        call(folder, CLI, "--client", "sandbox", "source", "add", name, "--user", "SYS",
             "--mode", "SYSDBA", given="sandbox\r\n")
    call(folder, CLI, "--client", "sandbox", "job", "add", "J", "--from", "A", "--to", "B",
         "--interval", "0", "--description", "d", "--follow", "rows")
    runner = subprocess.Popen([*EMULATOR, CLI, "--client", "sandbox", "run", "--start", "J", "--for", "40"],
                              cwd=folder, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
    # The first pass has said where it begins.
    wait_for(b"Nothing synchronized", runner)
    call(folder, SANDBOX, "sql", "A", given="insert into SHOP.T values (1, 'Größe');\n"
         "insert into SHOP.T values (2, null);\nupdate SHOP.T set N = 'two' where ID = 2;\n")
    wait_for(b"Successfully synchronized", runner)
    print(call(folder, SANDBOX, "diff", "A", "B"))
    runner.stdout.close()
    runner.kill()
    runner.wait()


# Somebody may still hold a file there for a moment.
with tempfile.TemporaryDirectory(ignore_cleanup_errors=True) as folder:
    main(folder)
