"""What the tests of `mspdi migrate --machines` share. Machines are reached by a program in the place of ssh that runs here
what is to run there.

Usage of each test: <test> <mspdi> <folder of examples> <scratch folder>; exit status 77 without GNU parallel.
"""
import csv
import os
import re
import shutil
import signal
import subprocess
import sys
import time
from pathlib import Path

PROGRAM, EXAMPLES, SCRATCH = sys.argv[1], Path(sys.argv[2]).resolve(), Path(sys.argv[3]).resolve()
EXAMPLE = EXAMPLES / "SplitTasks.xml"
# Options of ssh, the machine, the command. A log-in begins elsewhere, and with a shell of its own.
SSH = """#!/bin/sh
while [ "${1#-}" != "$1" ]; do shift 2; done
echo "$1" >>"$(dirname "$0")/logins"
machine=$1
shift
[ "$1" != -- ] || shift
cd /
"""
RUN = 'export SHELL=/bin/sh\nexec sh -c "$*"\n'


def expect(holds, *what):
    if not holds:
        sys.exit(" ".join(map(str, what)))


def environment(ssh=None, **more):
    """Neither a check without a log-in nor the account of a service has a shell that GNU parallel could use."""
    variables = {"PATH": os.environ["PATH"], "TZ": "UTC", "LC_ALL": "C", "SHELL": "/bin/false", "HOME": str(SCRATCH)}
    if ssh:
        variables["PARALLEL_SSH"] = str(ssh)
    return {**variables, **more}


def new_folder(name):
    folder = SCRATCH / name
    folder.mkdir(parents=True)
    return folder


def script_in(folder, name, content):
    path = folder / name
    path.write_text(content, encoding="utf-8")
    path.chmod(0o755)
    return path


def fake_ssh(folder, special=""):
    """`special` is what comes before the command is run, as lines of the shell that may look at $machine."""
    return script_in(folder, "fake-ssh", SSH + special + RUN)


def plans_in(folder, count):
    folder.mkdir(parents=True, exist_ok=True)
    for number in range(count):
        shutil.copyfile(EXAMPLE, folder / f"Plan{number}.xml")


def command(*arguments):
    return [PROGRAM, "migrate", *map(str, arguments)]


def migrate(status, *arguments, ssh=None, **more):
    run = subprocess.run(command(*arguments), stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False, timeout=600,
                         env=environment(ssh, **more))
    expect(run.returncode == status, arguments, "ended with", run.returncode, "instead of", status, run.stdout,
           run.stderr.decode(errors="replace"))
    return run


def begin(*arguments, ssh=None, stderr=subprocess.PIPE):
    return subprocess.Popen(command(*arguments), stdout=subprocess.PIPE, stderr=stderr, start_new_session=True,
                            env=environment(ssh))


def report_of(out):
    with open(out / "report.tsv", encoding="utf-8", newline="") as file:
        return list(csv.DictReader(file, delimiter="\t", quoting=csv.QUOTE_NONE))


def documents_in(out):
    return sorted(out.rglob("*.kdzx"))


def visible_documents_in(out):
    return list(out.glob("*.kdzx"))


def expect_documents(out, count):
    """So many documents, each complete, each reported once, and nothing left in the making."""
    documents = documents_in(out)
    expect(len(documents) == count, out, "holds", len(documents), "documents instead of", count)
    for document in documents:
        contents = (document / "__TOC.xml").read_bytes()
        identifier = re.search(rb'<scenario [^>]*\bid="([^"]+)"', (document / "Actual.xml").read_bytes())
        expect(identifier and identifier[1] in contents, document, "is not of one finished import")
    told = [row["document"] for row in report_of(out) if row["verdict"] == "imported"]
    expect(len(set(told)) == len(told) == count, out, "tells of", len(told), "documents")
    expect(not os.listdir(out / ".mspdi-migrate" / "run"), "work is left behind")


def wait_for(what, holds):
    """What `holds` gives in the end; patient, since the machine may have much else to do."""
    end = time.monotonic() + 180
    while time.monotonic() < end:
        if found := holds():
            return found
        time.sleep(0.02)
    return sys.exit(f"waited in vain: {what}")


def run_tests(namespace):
    version = subprocess.run(["sh", "-c", "parallel --version"], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                             check=False).stdout
    if not version.startswith(b"GNU parallel"):
        print("skipped: GNU parallel is not installed")
        sys.exit(77)
    shutil.rmtree(SCRATCH, ignore_errors=True)
    SCRATCH.mkdir(parents=True)
    for number in (signal.SIGHUP, signal.SIGINT, signal.SIGTERM):
        signal.signal(number, signal.SIG_DFL)  # whoever started this may ignore them
    for name, test in list(namespace.items()):
        if name.startswith("test_"):
            since = time.monotonic()
            test()
            print(name, f"{time.monotonic() - since:.1f} s", flush=True)
    shutil.rmtree(SCRATCH)
