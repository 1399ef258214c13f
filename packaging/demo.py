# SPDX-License-Identifier: MIT
"""The demonstration: a shop's database is replicated into another one while people work on it.

Makes two sandbox databases, SHOP_HQ and SHOP_COPY, defines a job between them, starts it, lets a
workload run on SHOP_HQ, kills the replicating program in the middle of a batch, lets it continue,
and compares the databases at the end. Exit status 0: identical.
"""
import json
import os
import random
import shutil
import signal
import subprocess
import sys
import time
from pathlib import Path

TABLES = """
create table SHOP.CUSTOMERS (ID number(10) primary key, NAME varchar2(80) not null,
  BORN date, CREDIT number(12,2), REMARK varchar2(400));
create table SHOP.PRODUCTS (ID number(10) primary key, TITLE varchar2(120) not null,
  PRICE number(10,2) not null, WEIGHT number, DESCRIPTION varchar2(4000));
create table SHOP.ORDERS (ID number(10) primary key, CUSTOMER_ID number(10) not null,
  ORDERED timestamp(6), STATUS varchar2(12), NOTE varchar2(1000));
create table SHOP.ORDER_LINES (ORDER_ID number(10), LINE_NO number(4), PRODUCT_ID number(10),
  QUANTITY number(8,3), PRICE number(10,2), constraint ORDER_LINES_PK primary key (ORDER_ID, LINE_NO));
create table SHOP.CARTS (ID number(10) primary key, CONTENT varchar2(400));
create table CRM.CONTACTS (ID number(10) primary key, WHO varchar2(80), SAID varchar2(4000), AT_TIME date);
create table {history}.PRICE_HISTORY (PRODUCT_ID number(10), CHANGED timestamp(6), OLD_PRICE number(10,2),
  constraint PRICE_HISTORY_PK primary key (PRODUCT_ID, CHANGED));
"""
EXCLUDED = "SHOP.CARTS"
MOVED = ("SHOP.PRICE_HISTORY", "ARCHIVE.PRICE_HISTORY")


def text(value):
    return "NULL" if value is None else "'" + value.replace("'", "''") + "'"


class Workload:
    """Transactions of a shop, the same for the same seed; every seventh is rolled back."""

    def __init__(self, seed):
        self.random = random.Random(seed)
        self.next_id = 1
        self.customers, self.products, self.orders = [], [], []

    def new_id(self):
        self.next_id += 1
        return self.next_id

    def moment(self):
        r = self.random
        return (f"20{r.randint(10, 26)}-{r.randint(1, 12):02}-{r.randint(1, 28):02} "
                f"{r.randint(0, 23):02}:{r.randint(0, 59):02}:{r.randint(0, 59):02}")

    def date(self):
        return f"to_date('{self.moment()}', 'YYYY-MM-DD HH24:MI:SS')"

    def timestamp(self):
        return (f"to_timestamp('{self.moment()}.{self.random.randint(0, 999999):06}', "
                "'YYYY-MM-DD HH24:MI:SS.FF6')")

    def words(self, most):
        r = self.random
        choice = ["O'Hara", "semi;colon", "line\nbreak", 'a "quoted" word', "Käse", "日本", "100%",
                  "it''s", "x = ';'", "-- no comment", "/* nor this */", "plain", "long " * 40]
        return " ".join(r.choice(choice) for _ in range(r.randint(1, most)))[:most * 12]

    def maybe(self, value):
        return None if self.random.random() < 0.25 else value

    def customer(self):
        ident, r = self.new_id(), self.random
        yield (f"insert into SHOP.CUSTOMERS (ID, NAME, BORN, CREDIT, REMARK) values ({ident}, "
               f"{text(self.words(3))}, {self.date()}, {r.randint(-10**6, 10**8) / 100}, "
               f"{text(self.maybe(self.words(10)))})")
        yield (f"insert into CRM.CONTACTS values ({self.new_id()}, {text(self.words(2))}, "
               f"{text(self.words(250))}, {self.date()})")
        self.customers.append(ident)

    def product(self):
        ident, r = self.new_id(), self.random
        yield (f"insert into SHOP.PRODUCTS values ({ident}, {text(self.words(4))}, "
               f"{r.randint(1, 10**6) / 100}, {r.random() * 10 ** r.randint(-9, 9)}, "
               f"{text(self.maybe(self.words(250)))})")
        self.products.append(ident)

    def order(self):
        if not self.customers or not self.products:
            return
        ident, r = self.new_id(), self.random
        yield (f"insert into SHOP.ORDERS values ({ident}, {r.choice(self.customers)}, "
               f"{self.timestamp()}, 'new', {text(self.maybe(self.words(8)))})")
        for line in range(1, r.randint(2, 6)):
            yield (f"insert into SHOP.ORDER_LINES values ({ident}, {line}, {r.choice(self.products)}, "
                   f"{r.randint(1, 5000) / 1000}, {r.randint(1, 10**5) / 100})")
        yield f"insert into SHOP.CARTS values ({ident}, {text(self.words(3))})"
        self.orders.append(ident)

    def change(self):
        r = self.random
        if self.products:
            product = r.choice(self.products)
            yield (f"insert into SHOP.PRICE_HISTORY values ({product}, {self.timestamp()}, "
                   f"{r.randint(1, 10**6) / 100})")
            yield f"update SHOP.PRODUCTS set PRICE = PRICE * 1.1 + 0.05 where ID = {product}"
        if self.customers:
            yield (f"update SHOP.CUSTOMERS set CREDIT = CREDIT - 12.34, REMARK = "
                   f"{text(self.maybe(self.words(6)))} where ID = {r.choice(self.customers)}")
        if self.orders:
            yield (f"update SHOP.ORDERS set STATUS = 'shipped', NOTE = NULL "
                   f"where ID = {r.choice(self.orders)}")
            yield f"delete from SHOP.ORDER_LINES where ORDER_ID = {r.choice(self.orders)} and LINE_NO > 2"

    def long(self):
        """One transaction, made slowly: see Demo.long_transaction."""
        return [statement for _ in range(4) for statement in self.customer()] + ["commit"]

    def transactions(self, count):
        for number in range(count):
            lists = (list(self.customers), list(self.products), list(self.orders))
            kind = self.random.choice([self.customer, self.product, self.order, self.order, self.change])
            statements = list(kind())
            if number % 7 == 6:
                self.customers, self.products, self.orders = lists
                yield statements + ["rollback"]
            else:
                yield statements + ["commit"]


class Demo:
    def __init__(self, programs, folder):
        self.cli = [str(programs / "quillmere-cli"), "--workdir", str(folder), "--client", "sandbox"]
        self.sandbox = [str(programs / "quillmere-sandbox"), "--workdir", str(folder)]
        self.folder = folder
        self.runner = None
        self.log = folder / "run.txt"

    def call(self, command, given=None, **environment):
        done = subprocess.run(command, input=given, text=True, capture_output=True, check=False,
                              env=dict(os.environ, **environment))
        if done.returncode != 0:
            sys.exit(f"{' '.join(command)}\nfailed: {done.stderr or done.stdout}")
        return done.stdout

    def databases(self):
        for name, history in (("SHOP_HQ", "SHOP"), ("SHOP_COPY", "ARCHIVE")):
            self.call(self.sandbox + ["create", name])
            users = "".join(f"create user {owner} identified by secret;\n"
                            for owner in ("SHOP", "CRM", "ARCHIVE"))
            script = self.folder / f"{name}.sql"
            script.write_text(users + TABLES.format(history=history), encoding="utf-8")
            self.call(self.sandbox + ["sql", name, str(script)])

    def job(self):
        for name in ("SHOP_HQ", "SHOP_COPY"):
            self.call(self.cli + ["source", "add", name, "--user", "SYS", "--mode", "SYSDBA"], "sandbox\n")
        # What a sandbox has committed is in its redo at once.
        (self.folder / "config" / "settings.xml").write_text(
            "<settings>\n<commit_age>0</commit_age>\n</settings>\n")
        self.call(self.cli + ["job", "add", "shop", "--from", "SHOP_HQ", "--to", "SHOP_COPY", "--follow",
                              "commits", "--interval", "0", "--description", "demonstration"])
        self.call(self.cli + ["job", "exclude", "shop", *EXCLUDED.split(".")])
        owner, table = MOVED[0].split(".")
        self.call(self.cli + ["job", "owner", "shop", owner, MOVED[1].split(".")[0], table])

    def start(self, *how):
        # A little latency, so that there is a middle of a batch to be killed in.
        environment = dict(os.environ, QUILLMERE_SANDBOX_LATENCY_US="400")
        with self.log.open("a") as log:
            self.runner = subprocess.Popen(self.cli + ["run", *how, "--sweep-ms", "400"],
                                           stdout=log, stderr=log, env=environment)

    def long_transaction(self, shop, pause_us):
        """So long between two statements that passes come and go while it is open."""
        script = self.folder / "long.sql"
        script.write_text("".join(s + ";\n" for s in shop.long()), encoding="utf-8")
        self.call(self.cli + ["sql", "SHOP_HQ", str(script)], QUILLMERE_SANDBOX_LATENCY_US=str(pause_us))

    def status(self):
        return json.loads(self.call(self.cli + ["job", "show", "shop", "--json"]))

    def messages(self):
        return self.log.read_text(errors="replace").splitlines()

    def check_runner(self):
        if self.runner.poll() is not None:
            sys.exit("the runner has ended:\n" + "\n".join(self.messages()[-5:]))


def progress(demo, before, seconds):
    now = demo.status()
    done = now["total_done"] + now["blocked"]
    rate = (done - before["total_done"] - before["blocked"]) / seconds
    print(f"   {now['state']:<9} applied {now['total_done']:>6}  blocked {now['blocked']:>5}  "
          f"to do {now['need_to_do']:>6}  {rate:>6.0f} statements/s", flush=True)
    return now


def main():
    programs, folder = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()
    transactions = int(os.environ.get("DEMO_TRANSACTIONS", "1500"))
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    began = time.monotonic()
    demo = Demo(programs, folder)
    print("1. Two sandbox databases, SHOP_HQ and SHOP_COPY: 7 tables, 2 owners", flush=True)
    demo.databases()
    print(f"2. A job from one to the other, following commits: {EXCLUDED} left out, {MOVED[0]} written to "
          f"{MOVED[1].split('.')[0]}", flush=True)
    demo.job()
    demo.start("--start", "shop")
    while demo.status()["state"] != "Started":
        demo.check_runner()
        time.sleep(0.05)
    print(f"3. The job runs; {transactions} transactions on SHOP_HQ, every seventh rolled back", flush=True)
    script = folder / "workload.sql"
    shop, before = Workload(2026), len(demo.messages())
    demo.long_transaction(shop, 400_000)
    passes = sum("Nothing synchronized" in line for line in demo.messages()[before:])
    print(f"   The first one was open over {passes} passes", flush=True)
    statements = [s for t in shop.transactions(transactions) for s in t]
    script.write_text("".join(s + ";\n" for s in statements), encoding="utf-8")
    workload = subprocess.Popen(demo.cli + ["sql", "SHOP_HQ", str(script)],
                                stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
    try:
        return watch(demo, workload, began)
    finally:
        for process in (workload, demo.runner):
            if process.poll() is None:
                process.kill()


def watch(demo, workload, began):
    seen, killed, quiet_from, shown = demo.status(), False, None, time.monotonic()
    while time.monotonic() - began < 120:
        demo.check_runner()
        now = demo.status()
        if not killed and now["total_done"] > 300 and now["need_to_do"] > 50:
            demo.runner.send_signal(signal.SIGKILL)
            demo.runner.wait()
            killed = True
            print(f"4. kill -9 with {now['need_to_do']} statements of a batch still to do; "
                  "the job continues", flush=True)
            demo.start("--continue", "shop")
        if time.monotonic() - shown >= 1:
            seen = progress(demo, seen, time.monotonic() - shown)
            shown = time.monotonic()
        if workload.poll() is not None and quiet_from is None:
            if workload.returncode != 0:
                sys.exit("the workload failed: " + workload.stderr.read())
            quiet_from = len(demo.messages())
        if quiet_from is not None:
            last = demo.messages()[quiet_from:]
            if sum("Nothing synchronized" in line for line in last[-2:]) == 2:
                break
        time.sleep(0.05)
    demo.runner.terminate()
    status = demo.runner.wait()
    print(f"5. Everything is quiet; the runner ended with status {status}", flush=True)
    verdict = subprocess.run(
        demo.sandbox + ["diff", "SHOP_HQ", "SHOP_COPY", "--exclude", EXCLUDED, "--map", "=".join(MOVED)],
        text=True, capture_output=True, check=False)
    print(verdict.stdout.rstrip())
    identical = verdict.returncode == 0 and killed and status == 0
    if not killed:
        print("the runner was never caught in the middle of a batch")
    print(f"VERDICT: {'identical' if identical else 'NOT identical'} "
          f"after {time.monotonic() - began:.0f} seconds. Files: {os.path.relpath(demo.folder)}")
    return 0 if identical else 1


if __name__ == "__main__":
    sys.exit(main())
