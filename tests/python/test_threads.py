"""Long calls release the GIL, and a lock per database keeps concurrent
Python threads from meeting inside it."""

import os
import subprocess
import sys
import textwrap
import threading

import pytest

import sparlane

# Exporting more than a pipe holds into a FIFO blocks until someone reads.
# Were the GIL held meanwhile, the reading thread could not go on between its
# reads and the program would hang; it must finish.
FIFO_EXPORT = textwrap.dedent("""
    import os, sys, threading
    sys.path.insert(0, sys.argv[2])
    import conftest
    fifo = sys.argv[1]
    db = conftest.make_sample()
    for i in range(5000):
        db.add_parameter(conftest.record(1, 1, 1, 1.0 + i, 1000.0))
    worker = threading.Thread(target=getattr(db, sys.argv[3]), args=(fifo,))
    worker.start()
    with open(fifo, "rb") as reader:
        data = reader.read()
    worker.join()
    print(len(data))
""")


@pytest.mark.skipif(not hasattr(os, "mkfifo"), reason="needs FIFOs")
@pytest.mark.parametrize("export", ["export_csv", "export_json"])
def test_export_runs_without_the_gil(tmp_path, export):
    fifo = tmp_path / "pipe"
    os.mkfifo(fifo)
    here = os.path.dirname(__file__)
    done = subprocess.run([sys.executable, "-c", FIFO_EXPORT, str(fifo), here, export],
                          capture_output=True, text=True, timeout=30,
                          env=dict(os.environ, PYTHONPATH=os.pathsep.join(sys.path)))
    assert done.returncode == 0, done.stderr
    assert int(done.stdout) > 200000


def test_loads_and_queries_on_one_database_from_two_threads(sample_file):
    db = sparlane.Database()
    db.load(sample_file)
    failures = []
    stop = threading.Event()

    def reload():
        try:
            for _ in range(200):
                db.load(sample_file)
                db.validate()
        except Exception as error:  # noqa: BLE001 - reported below
            failures.append(error)
        finally:
            stop.set()

    def ask():
        while not stop.is_set():
            found = db.find_exact("Mild steel", 6.0, "AIR-45A")
            if found is not None and found.cut_speed_mm_min != 3000.0:
                failures.append(found)

    threads = [threading.Thread(target=reload), threading.Thread(target=ask)]
    for t in threads:
        t.start()
    for t in threads:
        t.join()
    assert failures == []
    assert db.find_exact("Mild steel", 6.0, "AIR-45A").cut_speed_mm_min == 3000.0
