# SPDX-License-Identifier: MIT
"""The demonstration in a window: a shop's database that people work on, and the program beside it.

Makes the databases and the job of demo.py, lets the job replicate for a moment, and opens the window
program on it. While the window is open, transactions are made on SHOP_HQ; they end with it.
"""
import os
import shutil
import subprocess
import sys
import time
from pathlib import Path

from demo import Demo, Workload

BATCH = 6            # transactions at a time
PAUSE = 0.7          # seconds between them
SECONDS = int(os.environ.get("DEMO_SECONDS", "1800"))
FIRST_PASSES = 40    # statements that are applied before the window opens
LONG_EVERY = 12      # of the batches, one is a transaction that stays open over several passes
LONG_PAUSE = 700_000  # microseconds between its statements


def statements(transactions):
    return "".join(statement + ";\n" for transaction in transactions for statement in transaction)


class Shop:
    """People at work, a batch of transactions at a time."""

    def __init__(self, demo):
        self.demo = demo
        self.workload = Workload(2026)
        self.transactions = self.workload.transactions(10**9)
        self.batches = 0
        self.script = demo.folder / "workload.sql"

    def work(self):
        self.batches += 1
        if self.batches % LONG_EVERY == 0:
            return self.demo.long_transaction(self.workload, LONG_PAUSE)
        batch = [next(self.transactions) for _ in range(BATCH)]
        self.script.write_text(statements(batch), encoding="utf-8")
        self.demo.call(self.demo.cli + ["sql", "SHOP_HQ", str(self.script)])


def first_passes(demo, shop):
    demo.start("--start", "shop")
    try:
        while demo.status()["state"] != "Started":
            demo.check_runner()
            time.sleep(0.05)
        limit = time.monotonic() + 30
        while demo.status()["total_done"] < FIRST_PASSES and time.monotonic() < limit:
            demo.check_runner()
            shop.work()
            time.sleep(0.2)
    finally:
        demo.runner.terminate()
        demo.runner.wait()


def main():
    programs, folder = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    demo = Demo(programs, folder)
    shop = Shop(demo)
    print("1. Two sandbox databases, SHOP_HQ and SHOP_COPY, and a job between them", flush=True)
    demo.databases()
    demo.job()
    print("2. The job replicates for a moment", flush=True)
    first_passes(demo, shop)
    print("3. The window opens, and people work on SHOP_HQ.\n"
          "   Select the job 'shop' and press Run: it continues where it was.", flush=True)
    command = [str(programs / "quillmere"), "--workdir", str(folder), "--client", "sandbox"]
    window = subprocess.Popen(command, env=dict(os.environ, QUILLMERE_SANDBOX_LATENCY_US="400"))
    try:
        end = time.monotonic() + SECONDS
        while window.poll() is None and time.monotonic() < end:
            shop.work()
            time.sleep(PAUSE)
        status = window.wait()
    except KeyboardInterrupt:
        window.terminate()
        status = window.wait()
    finally:
        if window.poll() is None:
            window.kill()
    print(f"The window has ended. Everything is in {os.path.relpath(folder)}; to open it again:\n"
          f"  {os.path.relpath(command[0])} --workdir {os.path.relpath(folder)} --client sandbox")
    return status


if __name__ == "__main__":
    sys.exit(main())
