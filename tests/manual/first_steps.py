# SPDX-License-Identifier: MIT
"""Does what the manual's page First steps says, on the command line.

    first_steps.py SOURCE_FOLDER FOLDER_OF_THE_PROGRAMS
"""
import html
import os
import re
import subprocess
import sys
import tempfile
import time
from pathlib import Path

LIMIT = 120  # seconds that a condition may take


def wait_for(condition, what):
    end = time.monotonic() + LIMIT
    while not condition():
        if time.monotonic() > end:
            sys.exit("waited in vain: " + what)
        time.sleep(0.1)


def main():
    page = (Path(sys.argv[1]) / "HTML/first-steps.html").read_text(encoding="utf-8")
    by_hand = page.partition('id="by-hand"')[2]
    file_name = re.search(r"to a file <code>(.*?)</code>", by_hand).group(1)
    blocks = [html.unescape(text) for text in re.findall('<pre tabindex="0"><code>(.*?)</code></pre>', by_hand, re.S)]
    environment = dict(os.environ, PATH=str(Path(sys.argv[2]).resolve()) + ":" + os.environ["PATH"])
    with tempfile.TemporaryDirectory(prefix="quillmere-steps-") as folder:
        def sh(text):
            done = subprocess.run(["bash", "-e", "-c", text], cwd=folder, env=environment, text=True,
                                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=LIMIT)
            print(f"$ {text}\n{done.stdout}", flush=True)
            if done.returncode:
                sys.exit(f"exit status {done.returncode}")
            return done.stdout

        Path(folder, file_name).write_text(blocks[0], encoding="utf-8")
        run, log = None, Path(folder, "run.log")
        try:
            for block in blocks[1:]:
                if " run " in block:
                    with log.open("w") as output:
                        run = subprocess.Popen(["bash", "-c", "exec " + block], cwd=folder, env=environment,
                                               stdout=output, stderr=output)
                    wait_for(lambda: "Nothing synchronized" in log.read_text(), "the job to run")
                elif " job list" in block:
                    wait_for(lambda: re.search(r"^nightly +Started +1 ", sh(block), re.M), "1 under Total Done")
                else:
                    answer = sh(block)
            run.terminate()
            if run.wait(LIMIT) != 0:
                sys.exit(log.read_text())
        finally:
            if run is not None and run.poll() is None:
                run.kill()
    if answer != "identical\n":
        sys.exit("the two sides differ")


if __name__ == "__main__":
    main()
