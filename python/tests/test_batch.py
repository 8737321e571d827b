"""The batch on a LocalCluster of two worker processes: the outputs of a
serial run byte for byte, a corrupt file reported, a killed worker survived,
and a re-run that skips what is done."""
import json
import os
import signal
import threading
import time

import numpy as np
import pytest

import morvane
from conftest import page_photo
from morvane import batch

PAGES = 10


@pytest.fixture(scope="module")
def photos(tmp_path_factory):
    folder = tmp_path_factory.mktemp("photos")
    for i in range(PAGES):
        corners = [(120 + 5 * i, 90), (690, 70 + 4 * i), (660 - 3 * i, 520), (140, 540 - 6 * i)]
        morvane.write_image(folder / f"page{i}.png", page_photo(corners=corners, seed=i))
    morvane.write_image(folder / "blank.png", np.full((300, 400), 128, np.uint8))
    (folder / "corrupt.jpg").write_bytes(b"\xff\xd8\xff\xe0 cut short")
    return str(folder)


@pytest.fixture(scope="module")
def serial(photos, tmp_path_factory):
    """The outputs of one straighten_file after the other, in this process."""
    folder = tmp_path_factory.mktemp("serial")
    records = [batch.straighten_file(source, target) for source, target in batch.plan([photos], str(folder))]
    return {os.path.basename(r["output"]): r for r in records}, folder


def assert_same_outputs(records, serial):
    by_name, folder = serial
    assert len(records) == PAGES + 2
    for record in records:
        name = os.path.basename(record["output"])
        assert {**record, "output": name} == {**by_name[name], "output": name}
        if record["status"] == "found":
            with open(record["output"], "rb") as ours, open(folder / name, "rb") as theirs:
                assert ours.read() == theirs.read()


def test_batch_gives_the_serial_outputs_and_reports_every_file(cluster, photos, serial, tmp_path, capsys):
    records = batch.run([photos], str(tmp_path), scheduler=cluster.scheduler_address, progress=False)
    assert_same_outputs(records, serial)
    assert batch.summary(records) == {"found": PAGES, "not found": 1, "failed": 1, "skipped": 0}
    assert "cannot read" in next(r["error"] for r in records if r["status"] == "failed")
    with open(tmp_path / "morvane-batch.json") as report:
        assert json.load(report) == records
    with open(tmp_path / "morvane-batch.csv") as report:
        assert len(report.read().splitlines()) == len(records) + 1

    # A second run skips the pages written and tries the others again.
    assert batch.main([photos, "-o", str(tmp_path), "--scheduler", cluster.scheduler_address, "--quiet"]) == 2
    assert f"{PAGES + 2} files: 0 found, 1 not found, 1 failed, {PAGES} skipped" in capsys.readouterr().out


def test_batch_survives_a_worker_process_killed_mid_batch(cluster, photos, serial, tmp_path):
    from distributed import Client

    with Client(cluster) as client:
        victim = next(iter(client.run(os.getpid).values()))
    done = {}
    thread = threading.Thread(target=lambda: done.update(records=batch.run(
        [photos], str(tmp_path), scheduler=cluster.scheduler_address, progress=False)))
    thread.start()
    while thread.is_alive() and not list(tmp_path.glob("page*.png")):
        time.sleep(0.005)
    written_before = len(list(tmp_path.glob("page*.png")))
    os.kill(victim, signal.SIGKILL)
    thread.join()
    assert written_before < PAGES
    assert_same_outputs(done["records"], serial)
