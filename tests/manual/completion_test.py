# SPDX-License-Identifier: MIT
"""Completes command lines as bash does when Tab is pressed.

    completion_test.py SOURCE_FOLDER FOLDER_OF_THE_PROGRAMS
"""
import subprocess
import sys
import tempfile
from pathlib import Path

SOURCE, PROGRAMS = Path(sys.argv[1]).resolve(), Path(sys.argv[2]).resolve()
FRAMEWORK = Path("/usr/share/bash-completion/bash_completion")
SKIPPED = 77  # as the test's properties say

# What was typed, and what is offered: all of these; with "=" before them, these alone.
ROWS = (
    (["quillmere-cli", "so"], "= source"),
    (["quillmere-cli", ""], "source job run sql schema"),
    (["quillmere-cli", "job", "re"], "= refresh remove retry"),
    (["quillmere-cli", "--workdir", "try", "health", ""], "= big_job nightly"),
    (["quillmere-cli", "--workdir", "try", "job", "show", ""], "= big_job nightly"),
    (["quillmere-cli", "--workdir", "try", "run", "--start", ""], "= big_job nightly"),
    (["quillmere-cli", "--workdir", "try", "job", "add", "new", "--from", ""], "= BRANCH HQ"),
    (["quillmere-cli", "--workdir", "try", "job", "add", ""], "="),
    (["quillmere-cli", "--workdir", "try", "schema", "drop", "HQ", "t"], "= table"),
    (["quillmere-cli", "source", "add", "X", "--mode", "S"], "= SYSDBA"),
    (["quillmere-sandbox", "--workdir", "try", "diff", "HQ", "BR"], "= BRANCH"),
    (["quillmere-sandbox", "c"], "= create"),
)

SCRIPT = r"""
source "$1"; source "$2"; shift 2
COMP_WORDS=("$@"); COMP_CWORD=$(($# - 1)); COMP_LINE="$*"; COMP_POINT=${#COMP_LINE}; COMP_TYPE=9
COMP_WORDBREAKS=$' \t\n"\'><=;|&(:'
_quillmere
printf '%s\n' "${COMPREPLY[@]}"
"""


def run(folder, *words, given=""):
    subprocess.run([str(PROGRAMS / words[0]), "--workdir", "try", *words[1:]], cwd=folder, input=given, text=True,
                   check=True, stdout=subprocess.DEVNULL)


def main():
    if not FRAMEWORK.exists():
        print("bash-completion is not installed")
        return SKIPPED
    faults = []
    with tempfile.TemporaryDirectory(prefix="quillmere-complete-") as folder:
        Path(folder, "try").mkdir()
        cli = "quillmere-cli", "--client", "sandbox"
        for name in ("HQ", "BRANCH"):
            run(folder, "quillmere-sandbox", "create", name)
            run(folder, *cli, "source", "add", name, "--user=SYS", "--mode=SYSDBA", given="sandbox\n")
        for name in ("nightly", "big job"):
            run(folder, *cli, "job", "add", name, "--from=HQ", "--to=BRANCH", "--interval=1", "--description=x")
        for words, expected in ROWS:
            done = subprocess.run(
                ["bash", "--norc", "-c", SCRIPT, "bash", str(FRAMEWORK),
                 str(SOURCE / "packaging/completion/quillmere-cli"), str(PROGRAMS / words[0]), *words[1:]],
                cwd=folder, text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=60)
            offered = sorted(filter(None, done.stdout.split("\n")))
            wanted = sorted(word.replace("_", "\\ ") for word in expected.lstrip("= ").split())
            if offered != wanted if expected.startswith("=") else not set(wanted) <= set(offered):
                faults.append(f"{' '.join(words)}: offered {offered}, not {wanted}")
    print("\n".join(faults) or f"{len(ROWS)} command lines are completed")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
