# SPDX-License-Identifier: MIT
"""Drives quillmere-cli as an operator does, on sandbox databases in a fresh folder.

Usage: cli_test.py FOLDER-OF-THE-PROGRAMS [unittest arguments]
"""

import fcntl
import json
import os
import pathlib
import signal
import socket
import subprocess
import sys
import tempfile
import time
import unittest

sys.path.append("/usr/lib/python3/dist-packages")  # Debian's, whichever Python this is
from prometheus_client.parser import text_string_to_metric_families  # noqa: E402

PROGRAMS = pathlib.Path(sys.argv.pop(1)).resolve()
for variable in [name for name in os.environ if name.startswith("QUILLMERE_")]:
    del os.environ[variable]
PASSWORD = "canary-Xq7!<\\>"
LIMIT = 120  # seconds that a condition may take; a slow machine with sanitizers needs them

TABLES = """
create user SHOP identified by shop;
create table SHOP.ITEM (ID number(10) primary key, NAME varchar2(60), PRICE number(8,2));
create table SHOP.NOTE (ID number(10) primary key, NAME varchar2(60));
create table SHOP.SECRET (ID number(10) primary key);
"""


def wait_until(condition, what):
    end = time.monotonic() + LIMIT
    while not condition():
        if time.monotonic() > end:
            raise AssertionError("waited in vain: " + what)
        time.sleep(0.02)


class Running:
    """quillmere-cli run in the background."""

    def __init__(self, site, *arguments, **environment):
        self.log = site.path / "run.out"
        with open(self.log, "w") as out:
            self.process = subprocess.Popen(
                site.command("run", "--sweep-ms", "20", *arguments),
                stdout=out, stderr=subprocess.STDOUT, env={**os.environ, **environment})

    def text(self):
        return self.log.read_text()

    def wait_for(self, text):
        def found():
            if self.process.poll() is not None and text not in self.text():
                raise AssertionError(f"ended without {text!r}: {self.text()}")
            return text in self.text()
        wait_until(found, text)

    def has_signal(self, which, number):
        if self.process.poll() is not None:
            return False
        status = pathlib.Path(f"/proc/{self.process.pid}/status").read_text()
        mask = next(line for line in status.splitlines() if line.startswith(which)).split()[1]
        return bool(int(mask, 16) >> (number - 1) & 1)

    def end(self, number=signal.SIGTERM):
        self.process.send_signal(number)
        return self.process.wait(LIMIT)


class Site(unittest.TestCase):
    """A working folder; with data sources A and B and a job J when asked for."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="quillmere-cli-")
        self.addCleanup(folder.cleanup)
        self.path = pathlib.Path(folder.name)
        self.work = self.path / "work"
        self.password_file = self.file("password", PASSWORD + "\n")
        self.outputs = []
        self.client = "sandbox"

    def file(self, name, text):
        (self.path / name).write_bytes(text.encode())
        return str(self.path / name)

    def command(self, *arguments):
        return [str(PROGRAMS / "quillmere-cli"), "--workdir", str(self.work),
                "--client", self.client, *map(str, arguments)]

    def cli(self, *arguments, status=0, text=None, given=""):
        done = subprocess.run(self.command(*arguments), input=given.encode(), timeout=LIMIT,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        out, err = done.stdout.decode(), done.stderr.decode()
        self.outputs.append(out + err)
        shown = f"{arguments}: {done.returncode}\n{out}{err}"
        self.assertEqual(done.returncode, status, shown)
        if status == 1 and arguments[0] not in ("health", "doctor"):
            self.assertEqual(err.count("\n"), 1, "one line says why: " + shown)
            self.assertTrue(err.startswith("quillmere-cli: "), shown)
        if text is not None:
            self.assertIn(text, out + err)
        return out

    def sandbox(self, *arguments, given="", status=0):
        done = subprocess.run([PROGRAMS / "quillmere-sandbox", "--workdir", self.work, *arguments],
                              input=given, text=True, timeout=LIMIT, stdout=subprocess.PIPE)
        self.assertEqual(done.returncode, status, f"{arguments}: {done.stdout}")
        return done.stdout

    def jobs(self):
        return {job["name"]: job for job in json.loads(self.cli("job", "list", "--json"))}

    def add_sources(self, *names, tables=TABLES):
        self.work.mkdir(exist_ok=True)
        for name in names:
            self.sandbox("create", name, "--password-file", self.password_file)
            self.sandbox("sql", name, given=tables)
            self.cli("source", "add", name, "--user", "SYS", "--mode", "SYSDBA",
                     "--password-file", self.password_file)

    def add_job(self, name="J", interval=0):
        self.cli("job", "add", name, "--from", "A", "--to", "B", "--interval", interval,
                 "--description", "a job")

    def assert_same(self, *options):
        self.assertEqual(self.sandbox("diff", "A", "B", "SHOP", *options), "identical\n")

    def assert_password_nowhere(self):
        secret = PASSWORD.encode()
        for path in self.work.rglob("*"):
            if path.is_file():
                self.assertNotIn(secret, path.read_bytes(), path)
        for output in self.outputs:
            self.assertNotIn(PASSWORD, output)


class Usage(Site):
    def test_mistakes_are_answered_with_status_and_reason(self):
        wrong, refused, done = 2, 1, 0
        self.work.mkdir()
        job = ["job", "add", "J", "--from", "A", "--to", "B", "--description", "d", "--interval"]
        add = ["source", "add", "A", "--user", "u"]
        for arguments, status, text in [
            ([], wrong, "A subcommand is required"),
            (["source", "frobnicate"], wrong, "There is no command frobnicate"),
            (add + ["--mode", "SYSOPER"], wrong, "--mode"),
            (job + ["-1"], wrong, "--interval"),
            (["job", "owner", "J", "O", "N"], wrong, "TABLE or --all"),
            (["job", "owner", "--help"], done, "NEWOWNER"),
            (["job", "list", "--json"], done, "[]"),
            (["run"], done, "No job runs"),
            *[(command.split() + ["A"], refused, "There is no data source A") for command in (
                "source test", "source refresh", "source edit", "source remove", "sql",
                "schema tables")],
            *[(command.split() + ["J"], refused, "There is no job J") for command in (
                "run --start", "job show", "job stop", "job refresh")],
            (job + ["1"], refused, "There is no data source A"),
            (add, refused, "standard input is at its end"),
            *[(add + ["--password-file", file], refused, why) for file, why in (
                (self.path / "no", "Can not open"),
                (self.file("long", "x" * 32), "not be longer than 31 bytes"),
                (self.file("lines", "a\nb\n"), "more than one line"),
                (self.password_file, "ORA-12154"))],
        ]:
            self.cli(*arguments, status=status, text=text)

    def test_folders_and_client_libraries_that_do_not_work(self):
        for arguments in ("job list", "run --start J", "job refresh J", "sql A"):
            self.cli(*arguments.split(), status=1, text="There is no working folder")
        self.assertFalse(self.work.exists())
        add = ["source", "add", "A", "--user", "u", "--password-file", self.password_file]
        self.cli(*add, status=1, text="ORA-12154")
        self.assertTrue(self.work.exists(), "adding makes the folder")
        self.client = str(self.path / "no-client.so")
        self.cli(*add, status=1, text="OCIHandleAlloc(Env) : no client library could be loaded")
        self.cli("source", "list")
        self.work = self.path / "password"
        self.cli(*add, status=1, text="is no folder")

    def test_what_is_no_file_is_neither_waited_for_nor_followed_nor_written_over(self):
        self.add_sources("A", "B")
        self.add_job()
        add = ["job", "add", "K", "--from", "A", "--to", "B", "--interval", 1, "--description", "d"]
        target = self.path / "target"
        target.write_text("precious")
        for name, listed, refused, why in [
            ("quillmere.lock", "list", ["job", "refresh", "J"], "Can not create"),
            ("error.log", "list", ["job", "refresh", "J"], "Messages would be lost"),
            ("jobs/jobs.xml", "jobs.xml: it is", add, "Nothing is added to it"),
            ("config/database.xml", "database.xml: it is", add, "no data source A"),
            ("jobs/J/block.dat", "J is held", ["run", "--continue", "J"], "Job J is held: "),
            ("jobs/J/J.xml", "J is held", ["run", "--start", "J"], "refresh first"),
        ]:
            path = self.work / name
            path.exists() and path.rename(self.path / "aside")
            for make in (os.mkfifo, lambda path: path.symlink_to(target)):
                make(path)
                done = subprocess.run(self.command("job", "list"), timeout=LIMIT,
                                      stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
                self.assertIn(listed, "list" + done.stdout.decode())
                if refused:
                    done = subprocess.run(self.command(*refused), timeout=LIMIT,
                                          stderr=subprocess.PIPE)
                    self.assertIn(why, done.stderr.decode())
                    self.assertEqual(done.returncode, 1)
                path.unlink()
            (self.path / "aside").exists() and (self.path / "aside").rename(path)
        self.assertEqual(target.read_text(), "precious")
        self.assertEqual(self.jobs()["J"]["held"], "")

    def test_output_that_cannot_be_written_is_a_failure(self):
        self.work.mkdir()
        with open("/dev/full", "w") as full:
            done = subprocess.run(self.command("job", "list"), stdout=full,
                                  stderr=subprocess.PIPE, timeout=LIMIT)
        self.assertEqual((done.returncode, done.stderr),
                         (1, b"quillmere-cli: The output cannot be written\n"))


class DataSources(Site):
    def test_life_of_a_data_source(self):
        self.add_sources("A")
        self.sandbox("create", "B", "--password-file", self.password_file)
        add = ["source", "add", "B", "--user", "SYS", "--mode", "SYSDBA"]
        self.cli(*add, given="wrong\n", status=1, text="ORA-01017")
        self.cli(*add, given=PASSWORD + "\r\nnot read\n", text="Data source B added")
        listed = json.loads(self.cli("source", "list", "--json"))
        self.assertEqual([(s["name"], s["mode"], s["tables"], s["primary_keys"]) for s in listed],
                         [("A", "SYSDBA", 3, 3), ("B", "SYSDBA", 0, 0)])
        self.sandbox("sql", "B", given=TABLES)
        self.cli("source", "refresh", "B", text="3 tables, 3 primary keys")
        self.cli("source", "test", "B", text="connect to B successed")

        self.sandbox("sql", "B", given="alter user SYS identified by \"next\";")
        self.cli("source", "edit", "B", given="wrong", status=1, text="ORA-01017")
        self.cli("source", "edit", "B", given="next\n", text="Data source B changed")
        self.cli("source", "test", "B")
        self.cli("source", "remove", "B")
        self.assertFalse((self.work / "config" / "B.xml").exists())
        self.assertEqual((self.work / "config" / "A.xml").stat().st_mode & 0o077, 0)
        self.assert_password_nowhere()

    def test_a_script_stops_at_its_first_error_and_is_taken_back(self):
        self.add_sources("A", "B")
        self.cli("sql", "A", given="insert into SHOP.NOTE values (1, 'a;\nb'';\n');\n"
                 "-- it's over;\nupdate SHOP.NOTE set ID = 2;\n", text="2 statements executed")
        self.assertIn("a;\nb';\n", self.sandbox("sql", "A", given="select NAME from SHOP.NOTE;"))
        script = self.file("bad.sql", "insert into SHOP.NOTE values (3, 'x');\n\n"
                           "insert into SHOP.NOTE\nvalues (3, 'y');\ndelete from SHOP.NOTE;\n")
        self.cli("sql", "A", script, status=1,
                 text="bad.sql line 3: insert into SHOP.NOTE values (3, 'y'): ")
        self.assertIn("ORA-00001", self.outputs[-1])
        self.assertIn("was rolled back", self.outputs[-1])
        for broken, text in [("insert into SHOP.NOTE values (4, 'x", "ends inside a literal"),
                             ("select * from SHOP.NOTE;", "it shows no rows")]:
            self.cli("sql", "A", given="delete from SHOP.NOTE;\n" + broken, status=1, text=text)
        self.cli("sql", "A", given=f"create user SHOP identified by \"{PASSWORD}\";", status=1,
                 text="line 1: create user SHOP ...: ")
        self.cli("sql", "A", self.path, status=1, text="cannot be read")
        self.sandbox("sql", "B", given="insert into SHOP.NOTE values (2, 'a;\nb'';\n');\n")
        self.assert_same()
        self.assert_password_nowhere()


class Jobs(Site):
    def test_life_of_a_job(self):
        self.add_sources("A", "B")
        self.add_job("J", 5)
        self.cli("job", "exclude", "J", "SHOP", "NONE", status=1, text="no table SHOP.NONE")
        self.cli("job", "exclude", "J", "shop", "ITEM", status=1, text="no owner shop")
        self.cli("job", "exclude", "J", "SHOP", "--all", text="0 included")
        self.cli("job", "include", "J", "SHOP", "ITEM", "NOTE", text="2 included")
        self.cli("job", "owner", "J", "SHOP", "ARCHIVE", "NOTE")
        self.cli("job", "show", "J", text="can be missed")
        self.cli("job", "edit", "J", "--follow", "commits")
        run = Running(self, "--start", "J")
        run.wait_for("Job J started.")
        self.assertEqual(run.end(), 0)
        self.assertEqual(self.jobs()["J"]["state"], "Paused", "saved before any pass was due")
        self.cli("job", "edit", "J", "--follow", "rows", status=1, text="while it is stopped only")
        self.cli("job", "stop", "J")
        self.cli("job", "edit", "J", "--name", "Renamed", "--interval", 0, "--follow", "rows")
        self.sandbox("sql", "A", given="create table SHOP.NEW (ID number);\n"
                     "drop table SHOP.SECRET;\n")
        self.cli("job", "refresh", "Renamed", text="3 of 1 owners, 3 included")
        own_file = self.work / "jobs" / "Renamed" / "Renamed.xml"
        own_file.write_text(own_file.read_text().replace(
            "<name>NEW</name>", "<name>NEW</name>\n<compare>true</compare>"))
        self.cli("job", "show", "Renamed", text="1 to compare")
        self.cli("job", "compared", "Renamed", "SHOP", "--all", text="1 marks taken away")
        self.assertNotIn("compare", own_file.read_text())
        shown = json.loads(self.cli("job", "show", "Renamed", "--json"))
        self.assertEqual((shown["state"], shown["interval"], shown["source"]), ("Stopped", 0, "A"))
        self.assertEqual({t["name"]: t["remote_owner"] for t in shown["schemas"][0]["tables"]},
                         {"ITEM": "SHOP", "NEW": "SHOP", "NOTE": "ARCHIVE"})
        self.cli("run", "--continue", "Renamed", status=1, text="is Stopped: begin with --start")
        self.cli("job", "stop", "Renamed", status=1, text="is stopped already")
        self.cli("job", "remove", "Renamed", text="job: Renamed deleted.")
        self.assertEqual(os.listdir(self.work / "jobs"), ["jobs.xml"])

    def test_a_source_that_cannot_be_reached_leaves_a_job_without_tables(self):
        self.add_sources("A", "B")
        (self.work / "sandbox" / "A.db").rename(self.path / "away")
        self.cli("job", "add", "J", "--from", "A", "--to", "B", "--interval", 1, "--description",
                 "d", status=1, text="A job created, name is J. Can not connect to source")
        self.cli("run", "--start", "J", status=1, text="Not get table list yet, refresh first")
        self.cli("job", "refresh", "J", status=1, text="ORA-12154")
        (self.path / "away").rename(self.work / "sandbox" / "A.db")
        self.cli("job", "refresh", "J")
        (self.work / "sandbox" / "A.db").rename(self.path / "away")
        run = Running(self, "--start", "J")
        self.assertEqual(run.process.wait(LIMIT), 1)
        self.assertIn("ERROR Job J start failed.", run.text())
        self.assertIn("No job runs any more", run.text())
        self.assertEqual(self.jobs()["J"]["state"], "Stopped")


class Replication(Site):
    def setUp(self):
        super().setUp()
        self.add_sources("A", "B")
        self.add_job()

    def fill(self, first, last):
        self.cli("sql", "A", given="".join(
            f"insert into SHOP.ITEM values ({i}, 'item {i}', {i}.25);\n"
            for i in range(first, last)))

    def wait_for_job(self, condition, what):
        wait_until(lambda: condition(self.jobs()["J"]), what)

    def test_changes_arrive_and_others_may_look_but_not_touch(self):
        self.cli("job", "exclude", "J", "SHOP", "SECRET")
        run = Running(self, "--start", "J", "--progress", "--debug")
        run.wait_for("Nothing synchronized in this interval of  J")
        self.cli("sql", "A", given="insert into SHOP.ITEM values (1, 'it''s;\n\"x\"', 1.5);\n"
                 "insert into SHOP.ITEM values (2, null, 0);\n"
                 "insert into SHOP.NOTE values (1, 'n');\n"
                 "insert into SHOP.SECRET values (1);\n")
        self.wait_for_job(lambda job: job["total_done"] == 3 and job["blocked"] == 1, "inserts")
        self.cli("sql", "A", given="update SHOP.ITEM set NAME = 'two' where ID = 2;\n"
                 "delete from SHOP.NOTE;\n")
        self.wait_for_job(lambda job: job["total_done"] == 5, "update and delete")
        self.assertEqual(self.jobs()["J"]["state"], "Started")
        for refused in (["job", "refresh", "J"], ["source", "remove", "A"], ["run"],
                        ["job", "remove", "J"]):
            self.cli(*refused, status=1,
                     text=f"Another program (process {run.process.pid}) works on")
        run.wait_for("progress captured=6 applied=5 blocked=1 remaining=0")
        self.assertEqual(run.end(signal.SIGINT), 0)
        self.assert_same("--exclude", "SHOP.SECRET")
        self.assertEqual(self.jobs()["J"]["state"], "Paused")
        self.cli("run", "--start", "J", status=1, text="is Paused: go on with --continue")
        self.cli("job", "remove", "J", status=1, text="Job J is not stopped")
        self.cli("run", "--continue", "J", "--for", "0.2")
        self.cli("job", "stop", "J", text="Job J is stopped")
        self.assertEqual(self.jobs()["J"]["state"], "Stopped")
        self.outputs.append(run.text())
        self.assert_password_nowhere()

    def test_a_refused_row_is_known_wherever_one_looks(self):
        self.cli("health", "--max-behind", 5, text="stopped")
        self.cli("health", "J", status=1)
        self.cli("health", "K", status=3, text="There is no job K")
        run = Running(self, "--start", "J", "--json")
        run.wait_for('"event":"pass"')
        self.cli("health", "J", text="up to date")
        self.sandbox("sql", "B", given="insert into SHOP.ITEM values (2, 'b', 0);\n")
        self.fill(1, 4)
        self.wait_for_job(lambda job: job["health"] == "failing", "trouble")
        self.cli("health", status=2, text="statement 2 of 3, SHOP.ITEM: Execute sql fail")
        problem = json.loads(self.cli("job", "problem", "J", "--json"))["problem"]
        self.assertEqual((problem["ora"], problem["table"], problem["number"], problem["of"]),
                         (1, "SHOP.ITEM", 2, 3))
        self.assertIn("values ('2',", problem["statement"])
        self.cli("job", "retry", "J", status=1, text="Another program")
        self.assertEqual(run.end(), 3)
        events = [json.loads(line) for line in run.text().splitlines()]
        told = [event["text"] for event in events if event["event"] == "message"]
        self.assertEqual(told.count("J: statement 2 of 3 was refused, on SHOP.ITEM"), 1)
        failed = next(event for event in events if event.get("outcome") == "failed")
        self.assertEqual(failed["applied"], 1)
        self.cli("job", "problem", "J", text="a row with this key already")
        row = json.loads(self.cli("job", "problem", "J", "--row", "--json"))["row"]
        self.assertEqual((row["rows"], row["key"]), (1, ["ID"]))
        name = next(column for column in row["columns"] if column["name"] == "NAME")
        self.assertEqual(name["there"], "b")
        cures = self.path / "cures.sql"
        self.cli("doctor", "J", "--cures", cures, status=1, text="every query of the program")
        self.cli("doctor", "K", status=3)
        ahead = json.loads(self.cli("job", "preview", "J", "--json"))
        self.assertEqual((ahead["preview"], ahead["size"], ahead["next"]), ("pending", 3, 2))
        self.cli("job", "preview", "J", "--limit", 1, text="2  INSERT INTO SHOP.ITEM")
        self.cli("health", "J", status=1, text="paused")
        self.sandbox("sql", "B", given="delete from SHOP.ITEM where NAME = 'b';\n")
        self.cli("job", "retry", "J", text="Job J recovered after ")
        self.cli("job", "problem", "J", text="has no problem")
        self.assert_same()
        self.fill(4, 5)
        self.sandbox("sql", "B", given="insert into SHOP.ITEM values (5, 'b', 0);\n")
        self.fill(5, 7)
        self.cli("job", "retry", "J")  # sees them first
        self.cli("job", "retry", "J", status=1)
        self.cli("job", "skip", "J", "--reason", " ", status=1, text="Say why")
        self.cli("job", "skip", "J", "--reason", "B is right",
                 text="leaves out statement 2 of 3, SHOP.ITEM")
        self.cli("job", "retry", "J", text="recovered after 1 try")
        self.cli("job", "skip", "J", "--reason", "x", status=1, text="its batch is worked off")
        job = self.jobs()["J"]
        self.assertEqual([job[n] for n in ("total_done", "blocked", "tables_to_compare")], [5, 1, 1])
        skipped = (self.work / "jobs" / "J" / "skipped.sql").read_text()
        self.assertIn("statement 2 of 3, SHOP.ITEM: B is right\ninsert into", skipped)
        self.assertEqual(skipped.count("insert into"), 1)
        self.assertRegex((self.work / "history.log").read_text(),
                         r" skip job J: statement 2 of 3, SHOP.ITEM: B is right\n")
        families = {family.name: family.samples for family in text_string_to_metric_families(
            (self.work / "metrics.prom").read_text())}
        for name, value in (("applied", 5), ("blocked", 1), ("waiting_changes", 0),
                            ("failed_tries", 0)):
            sample, = families["quillmere_job_" + name]
            self.assertEqual((sample.labels, sample.value), ({"job": "J"}, value), name)
        good, = families["quillmere_job_last_good_pass_timestamp_seconds"]
        self.assertLess(abs(good.value - time.time()), LIMIT)

    def test_by_commits_a_transaction_is_taken_back_whole_and_a_lost_batch_holds_the_job(self):
        self.cli("job", "edit", "J", "--container", "shop", status=1, text="Only a job that follows")
        self.cli("job", "edit", "J", "--follow", "commits", "--interval", 0, "--container", "shop")
        self.cli("run", "--start", "J", status=1, text="container SHOP, but A leads into SANDBOX")
        self.cli("job", "edit", "J", "--no-container")
        self.cli("job", "edit", "J", "--position-table", "GHOST", status=1, text="could not be made")
        self.sandbox("sql", "B", given="create user OPS identified by x;\n")
        self.cli("job", "edit", "J", "--position-table", "OPS", text="could be written, locked")
        self.cli("job", "edit", "J", "--no-position-table", text="no position row any more")
        self.cli("job", "edit", "J", "--position-table", "OPS", text="is there on B")
        run = Running(self, "--start", "J", QUILLMERE_SANDBOX_LATENCY_US="4000")
        run.wait_for("Nothing synchronized")
        self.cli("job", "edit", "J", "--follow", "rows", status=1)
        self.fill(0, 400)
        self.wait_for_job(lambda job: 20 < job["has_done"] < 300, "half a transaction")
        self.assertEqual(run.end(), 0)
        job = self.jobs()["J"]
        self.assertEqual((job["follow"], job["total_done"], job["need_to_do"]), ("commits", 0, 400))
        self.cli("job", "edit", "J", "--follow", "rows", status=1, text="while it is stopped only")
        self.sandbox("sql", "A", given="alter database drop supplemental log data (all) columns;\n"
                     "alter table SHOP.NOTE add supplemental log data (all) columns;\n")
        self.cli("job", "show", "J", "--live", text="Container             SANDBOX")
        live = json.loads(self.cli("job", "show", "J", "--live", "--json"))["live"]
        self.assertEqual([line["text"].partition(": ")[2] for line in live if line["warning"]],
                         [f"alter table SHOP.{table} add supplemental log data (primary key) columns"
                          for table in ("ITEM", "SECRET")])
        batch = self.work / "jobs" / "J" / "sqlcmds.txt"
        aside = batch.rename(self.work / "aside")
        for shown in (["list"], ["show", "J"]):
            self.cli("job", *shown, text="It holds 400 changes")
        self.assertIn("It holds 400 changes", self.jobs()["J"]["held"])
        aside.rename(batch)
        self.assertEqual(self.jobs()["J"]["held"], "")
        run = Running(self, "--continue", "J")
        run.wait_for("Successfully synchronized a batch of J")
        self.assertEqual(run.end(), 0)
        self.assert_same()
        self.sandbox("sql", "A", given="alter table SHOP.SECRET add (MORE varchar2(9));\n")
        run = Running(self, "--continue", "J")
        cure = "alter table SHOP.SECRET add (MORE VARCHAR2(9));"
        run.wait_for("J: on B SHOP.SECRET has no column MORE. To bring it up: " + cure)
        self.wait_for_job(lambda job: [one["cure"] for one in job["definitions"]] == [cure], "it")
        self.cli("job", "show", "J", text="SHOP.SECRET has no column MORE: " + cure)
        self.sandbox("sql", "B", given=cure + "\n")
        self.fill(400, 402)
        run.wait_for("The tables on B fit those of J again")
        self.wait_for_job(lambda job: job["total_done"] == 402, "what was changed then")
        self.assertEqual(run.end(), 0)
        self.assert_same()

    def test_a_service_tells_its_manager_and_continues_what_is_paused(self):
        ldd = subprocess.run(["ldd", self.command()[0]], stdout=subprocess.PIPE, check=False).stdout
        if b"libsystemd" not in ldd:
            self.skipTest("built without libsystemd")
        self.cli("run", "--continue-all", status=1, text="No job goes on; begin one with --start")
        run = Running(self, "--start", "J")
        run.wait_for("Nothing synchronized")
        run.end()
        with socket.socket(socket.AF_UNIX, socket.SOCK_DGRAM) as manager:
            manager.bind(str(self.path / "notify"))
            manager.settimeout(LIMIT)
            run = Running(self, "--continue-all", NOTIFY_SOCKET=str(self.path / "notify"),
                          WATCHDOG_USEC="200000")
            told = [manager.recv(100) for _ in range(4)]
            self.assertEqual(told, [b"READY=1"] + 3 * [b"WATCHDOG=1"])
            self.fill(1, 5)
            self.wait_for_job(lambda job: job["total_done"] == 4, "work")
            self.assertEqual(run.end(), 0)
            while told[-1] != b"STOPPING=1":
                told.append(manager.recv(100))

    def test_a_hang_up_ends_it_as_the_others_do(self):
        run = Running(self, "--start", "J", QUILLMERE_SANDBOX_LATENCY_US="20000")
        run.wait_for("Job J started.")
        self.assertEqual(run.end(signal.SIGHUP), 0)

    def test_a_second_signal_ends_it_at_once(self):
        for under_way in (0.2, 1, 5, 20):  # seconds until an exchange is, which nothing tells
            run = Running(self, "--start", "J", QUILLMERE_SANDBOX_LATENCY_US="90000000")
            wait_until(lambda: run.has_signal("SigCgt", signal.SIGINT), "signals being looked for")
            time.sleep(under_way)
            run.process.send_signal(signal.SIGINT)
            wait_until(lambda: not run.has_signal("ShdPnd", signal.SIGINT), "the first signal")
            time.sleep(0.2)
            ended = run.end(signal.SIGTERM)
            if ended != 0:
                break
            self.cli("job", "stop", "J")
        self.assertEqual(ended, -signal.SIGTERM)

    def test_a_reader_who_has_gone_or_sleeps_does_not_hold_the_jobs(self):
        command = self.command("run", "--sweep-ms", "1")
        gone = subprocess.Popen(command + ["--start", "J"], stdout=subprocess.PIPE,
                                stderr=subprocess.PIPE)
        gone.stdout.readline()
        gone.stdout.close()
        self.assertIn(b"see error.log", gone.stderr.readline())
        self.fill(1, 20)
        self.wait_for_job(lambda job: job["total_done"] == 19, "work without a reader")
        gone.send_signal(signal.SIGTERM)
        self.assertEqual(gone.wait(LIMIT), 0)
        gone.stderr.close()
        reader, writer = os.pipe()
        fcntl.fcntl(writer, fcntl.F_SETPIPE_SZ, 4096)
        os.write(writer, b"x" * 4096)  # full from the start
        log = self.work / "error.log"
        before = log.stat().st_size
        asleep = subprocess.Popen(command + ["--continue", "J"], stdout=writer, stderr=writer)
        wait_until(lambda: log.stat().st_size > before, "a message for who sleeps")
        asleep.send_signal(signal.SIGTERM)
        self.assertEqual(asleep.wait(LIMIT), 0)
        os.close(reader)
        os.close(writer)


class Schema(Site):
    """A key in another order than the table's columns, referenced by another owner."""
    USERS = "create user SHOP identified by x;\ncreate user CRM identified by x;\n"
    TABLES = USERS + """
create table SHOP.ORDERS (ID number(10), PART number(3), NAME varchar2(60) default 'none' not null,
  AMOUNT number(12,2), FREE number, AT date, RATE float, CODE char(4), TXT clob, PIC blob,
  constraint ORDERS_PK primary key (PART, ID));
create table SHOP.PLAIN (A varchar2(10));
create index SHOP.ORDERS_NAME on SHOP.ORDERS(NAME, AT);
create index SHOP.ORDERS_CODE on SHOP.ORDERS(CODE);
create table CRM.VISITS (V number(5) primary key, OID number(10), OPART number(3),
  constraint VISITS_FK foreign key (OPART, OID) references SHOP.ORDERS (PART, ID));
"""
    ORPHAN = "insert into CRM.VISITS values (1, 77, 7);"

    def setUp(self):
        super().setUp()
        self.add_sources("A", tables=self.TABLES)
        self.add_sources("B", tables=self.USERS)

    def lists(self, name):
        return [sorted(json.loads(self.cli("schema", kind, name, "--json")), key=str)
                for kind in ("tables", "keys", "indexes")]

    def test_migrated_definitions_are_the_same(self):
        self.cli("schema", "migrate", "A", "B", "table", "--owner", "SHOP", "--owner", "CRM",
                 "--with-key", "--with-indexes")
        self.assertEqual(self.sandbox("diff", "A", "B"), "identical\n")
        self.cli("source", "refresh", "B")
        self.assertEqual(self.lists("A"), self.lists("B"))
        # What does not travel: foreign keys and defaults.
        self.sandbox("sql", "A", given=self.ORPHAN, status=1)
        self.sandbox("sql", "B", given=self.ORPHAN)
        # Dropped on the target and made anew, without the key that was not asked for.
        self.cli("schema", "migrate", "A", "B", "table", "CRM.VISITS", "--drop-target")
        self.cli("source", "refresh", "B")
        self.assertEqual(len(self.lists("B")[1]), 1)
        self.cli("schema", "migrate", "A", "B", "key", "--owner", "CRM")
        self.cli("source", "refresh", "B")
        self.assertEqual(self.lists("A"), self.lists("B"))

    def test_rename_keeps_foreign_keys_and_drop_goes_on_after_a_failure(self):
        self.cli("schema", "rename", "A", "key", "SHOP.ORDERS_PK", "ORDERS_KEY",
                 text="Key: SHOP.ORDERS_PK's name changed to ORDERS_KEY")
        self.cli("schema", "rename", "A", "index", "SHOP.ORDERS_CODE", "CODES")
        self.cli("schema", "rename", "A", "table", "SHOP.PLAIN", "PLANE")
        cached = self.lists("A")
        self.cli("source", "refresh", "A")
        self.assertEqual(cached, self.lists("A"))
        self.sandbox("sql", "A", given=self.ORPHAN, status=1)
        out = self.cli("schema", "drop", "A", "table", "SHOP.ORDERS", "SHOP.PLANE", status=1,
                       text="1 of 2 failed: Drop Table ORDERS failed, reason: ")
        self.assertIn("Drop Table PLANE successed", out)
        self.cli("schema", "drop", "A", "index", "SHOP.CODES")
        self.cli("schema", "drop", "A", "key", "SHOP.ORDERS_KEY")
        self.sandbox("sql", "A", given=self.ORPHAN)
        self.cli("schema", "drop", "A", "table", "SHOP.ORDERS", "--cascade")
        self.assertNotIn("SHOP", self.cli("schema", "tables", "A"))
        self.cli("schema", "drop", "A", "key", "SHOP.NONE", status=1, text="is not in the lists")
        self.assertIn("Drop Primary key ORDERS_KEY successed",
                      (self.work / "error.log").read_text())


if __name__ == "__main__":
    unittest.main()
