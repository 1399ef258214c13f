# SPDX-License-Identifier: MIT
"""Kills the replicating program with SIGKILL at random moments while a workload runs on the source,
lets it continue each time, and compares source and destination at the end.

usage: kill_runner.py PROGRAM_FOLDER [--kills N] [--seed N]

The job follows commits and has a position row, so nothing may be lost or doubled wherever it dies.
"""
import argparse
import os
import random
import shutil
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

SCHEMA = """
create user APP identified by secret;
create user OPS identified by secret;
create table APP.LEDGER (ID number(10) primary key, AMOUNT number(12,2), NOTE varchar2(200), AT_TIME date);
create table APP.STOCK (ID number(10) primary key, QUANTITY number(10), NAME varchar2(60));
"""


class Crash(Exception):
    """Something that must not happen."""


class Rig:
    def __init__(self, programs, folder, seed):
        self.folder = folder
        self.random = random.Random(seed)
        self.cli = [str(programs / "quillmere-cli"), "--workdir", str(folder), "--client", "sandbox"]
        self.sandbox = [str(programs / "quillmere-sandbox"), "--workdir", str(folder)]
        self.job_folder = folder / "jobs" / "crash"
        self.output = folder / "run.txt"
        self.next_id = 0
        self.stock = []
        self.runner = None
        self.workload = None
        self.settled = 0  # kills in the one moment between the server's commit and ours

    def call(self, command, given=None):
        done = subprocess.run(command, input=given, text=True, capture_output=True, check=False)
        if done.returncode != 0:
            raise Crash(f"{' '.join(command[3:])}: {done.stderr or done.stdout}")
        return done.stdout

    def set_up(self):
        schema = self.folder / "schema.sql"
        schema.write_text(SCHEMA)
        (self.folder / "config").mkdir(exist_ok=True)
        (self.folder / "config" / "settings.xml").write_text(
            "<settings>\n<commit_age>0</commit_age>\n</settings>\n")
        for name in ("SRC", "DST"):
            self.call(self.sandbox + ["create", name])
            self.call(self.sandbox + ["sql", name, str(schema)])
            self.call(self.cli + ["source", "add", name, "--user", "SYS", "--mode", "SYSDBA"], "sandbox\n")
        self.call(self.cli + ["job", "add", "crash", "--from", "SRC", "--to", "DST", "--interval", "0",
                              "--description", "killed again and again", "--follow", "commits"])
        self.call(self.cli + ["job", "edit", "crash", "--position-table", "OPS"])

    def start_workload(self, transactions):
        """Each transaction begins with an insert that cannot be applied twice unnoticed."""
        lines = []
        for _ in range(transactions):
            self.next_id += 1
            number, part, keep = self.next_id, None, self.random.random() < 0.9
            lines.append(f"insert into APP.LEDGER values ({number}, {number}.25, 'it''s; number\n{number}', sysdate);")
            if self.random.random() < 0.4 or not self.stock:
                lines.append(f"insert into APP.STOCK values ({number}, 100, 'part {number}');")
                self.stock += [number] if keep else []
            else:
                part = self.random.choice(self.stock)
                lines.append(f"update APP.STOCK set QUANTITY = QUANTITY - 1 where ID = {part};")
                lines.append(f"update APP.LEDGER set AMOUNT = AMOUNT * 1.5 where ID = {part};")
            if part and keep and self.random.random() < 0.1:
                self.stock.remove(part)
                lines.append(f"delete from APP.STOCK where ID = {part};")
            lines.append("commit;" if keep else "rollback;")
        script = self.folder / "workload.sql"
        script.write_text("\n".join(lines) + "\n")
        self.workload = subprocess.Popen(self.cli + ["sql", "SRC", str(script)], stdout=subprocess.DEVNULL,
                                         stderr=subprocess.PIPE, text=True)

    def end_workload(self):
        _, errors = self.workload.communicate(timeout=120)
        if self.workload.returncode != 0:
            raise Crash("the workload failed: " + errors)

    def start_runner(self, how):
        environment = dict(os.environ, QUILLMERE_SANDBOX_LATENCY_US="150")
        with self.output.open("w") as out:
            self.runner = subprocess.Popen(self.cli + ["run", how, "crash", "--sweep-ms", "10"],
                                           stdout=out, stderr=out, env=environment)

    def said(self, part):
        return [line for line in self.output.read_text(errors="replace").splitlines() if part in line]

    def await_said(self, why, happened):
        """Runs on until happened() is true."""
        limit = time.monotonic() + 120
        while not happened():
            if time.monotonic() > limit or self.runner.poll() is not None:
                raise Crash(why + ":\n" + "\n".join(self.said("")[-5:]))
            time.sleep(0.02)

    def kill_runner(self):
        """True when it was killed in the middle of a pass."""
        if self.runner.poll() is not None:
            raise Crash("the runner ended by itself:\n" + "\n".join(self.said("")[-5:]))
        self.runner.send_signal(signal.SIGKILL)
        self.runner.wait()
        self.look_for_trouble()
        self.settled += len(self.said("The destination took the last pass"))
        return (self.job_folder / "commit.dat").exists()

    def look_for_trouble(self):
        if self.said("ORA-00001") or self.said("is held"):
            raise Crash("a statement came twice, or the job is held:\n" + "\n".join(self.said("")[-5:]))

    def drain(self):
        def rests():
            self.look_for_trouble()
            last = self.said("ynchronize")[-3:]
            return len(last) == 3 and all("Nothing synchronized" in line for line in last)

        self.start_runner("--continue")
        self.await_said("the job does not come to rest", rests)
        self.runner.terminate()
        if self.runner.wait(timeout=60) != 0:
            raise Crash("the runner did not end well:\n" + "\n".join(self.said("")[-5:]))

    def verdict(self):
        done = subprocess.run(self.sandbox + ["diff", "SRC", "DST", "APP"], text=True, capture_output=True,
                              check=False)
        print(done.stdout.rstrip())
        if done.returncode != 0:
            raise Crash("source and destination differ")

    def stop(self):
        for process in (self.runner, self.workload):
            if process is not None and process.poll() is None:
                process.kill()


def run(rig, kills):
    rig.set_up()
    rig.start_runner("--start")
    rig.await_said("the job does not start", lambda: rig.said("Job crash started."))
    rig.kill_runner()
    in_a_pass = 0
    for number in range(kills):
        if rig.workload is None or rig.workload.poll() is not None:
            if rig.workload is not None:
                rig.end_workload()
            rig.start_workload(150)
        rig.start_runner("--continue")
        # How long a start takes is the machine's affair; one kill in four may come before its end.
        if rig.random.random() < 0.75:
            rig.await_said("the job does not go on", lambda: rig.said("crash"))
        time.sleep(rig.random.uniform(0, 0.45))
        in_a_pass += rig.kill_runner()
    rig.end_workload()
    rig.drain()
    rig.verdict()
    print(f"{kills} kills, {in_a_pass} of them in the middle of a pass, {rig.settled} in the one moment; "
          "nothing was lost or doubled")
    if kills >= 10 and in_a_pass == 0:
        raise Crash("no kill ever hit a pass: the test has tested nothing")


def main():
    arguments = argparse.ArgumentParser()
    arguments.add_argument("programs", type=Path)
    arguments.add_argument("--kills", type=int, default=100)
    arguments.add_argument("--seed", type=int, default=int.from_bytes(os.urandom(4), "little"))
    given = arguments.parse_args()
    print(f"seed {given.seed}", flush=True)
    folder = Path(tempfile.mkdtemp(prefix="quillmere-kill-"))
    rig = Rig(given.programs.resolve(), folder, given.seed)
    try:
        run(rig, given.kills)
    except Crash as reason:
        return f"FAILED: {reason}\nfiles: {folder}"
    finally:
        rig.stop()
    shutil.rmtree(folder, ignore_errors=True)
    return 0


if __name__ == "__main__":
    sys.exit(main())
