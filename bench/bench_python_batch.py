#!/usr/bin/env python3
"""Throughput of the Python batch on a folder of photos, with 1 and 2 Dask
worker processes, beside morvane-scan run serially on the same photos; and
two threads straightening two photos at once beside one thread doing one,
which shows that the library calls release the GIL.

    PYTHONPATH=build/python /usr/bin/python3 bench/bench_python_batch.py [--photos DIR] [--repetitions N]

Medians over the repetitions, the three batch configurations interleaved so
that all see the same load. The clusters are started before the timing; the
time of starting one is reported on its own.
"""
import argparse
import logging
import os
import statistics
import subprocess
import tempfile
import threading
import time

import morvane
from morvane import batch

ROOT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")


def timed(work):
    start = time.perf_counter()
    work()
    return time.perf_counter() - start


def batch_on(address, photos):
    def work():
        with tempfile.TemporaryDirectory() as outdir:
            batch.run([photos], outdir, scheduler=address, progress=False)
    return work


def scan_serially(scan, sources):
    def work():
        with tempfile.TemporaryDirectory() as outdir:
            subprocess.run([scan, *sources, "-d", outdir], stdout=subprocess.DEVNULL, check=False)
    return work


def threads_at_once(photos):
    def work():
        threads = [threading.Thread(target=morvane.straighten, args=(photo,)) for photo in photos]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
    return work


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--photos", default=os.path.join(ROOT, "..", "shared", "pages"))
    parser.add_argument("--scan", default=os.path.join(ROOT, "build", "tools", "morvane-scan"))
    parser.add_argument("--repetitions", type=int, default=5)
    args = parser.parse_args()
    from distributed import LocalCluster

    sources = [source for source, _ in batch.plan([args.photos], "")]
    print(f"{len(sources)} photos in {args.photos}")

    found = [photo for photo in map(morvane.read_image, sources) if morvane.find_page(photo).found][:2]
    single, double, busy = [], [], []
    for _ in range(4 * args.repetitions):
        single.append(timed(threads_at_once(found[:1])))
        cpu = time.process_time()
        double.append(timed(threads_at_once(found)))
        busy.append((time.process_time() - cpu) / double[-1])
    # Cores busy: the process's CPU time over the wall time; above 1 only when both threads ran at once.
    print(f"straighten (find and warp) one photo in one thread: {statistics.median(single) * 1000:.0f} ms; "
          f"two photos in two threads at once: {statistics.median(double) * 1000:.0f} ms "
          f"({statistics.median(double) / statistics.median(single):.2f} times one, "
          f"{statistics.median(busy):.2f} cores busy)")

    clusters, startup = {}, {}
    for workers in (1, 2):
        start = time.perf_counter()
        clusters[workers] = LocalCluster(n_workers=workers, threads_per_worker=1, processes=True,
                                         dashboard_address="localhost:0", silence_logs=logging.ERROR)
        startup[workers] = time.perf_counter() - start
    runs = {"morvane-scan, serial": scan_serially(args.scan, sources)}
    for workers, cluster in clusters.items():
        runs[f"batch, {workers} worker{'s' if workers > 1 else ''}"] = batch_on(cluster.scheduler_address, args.photos)
    times = {name: [] for name in runs}
    for _ in range(args.repetitions):
        for name, work in runs.items():
            times[name].append(timed(work))
    for cluster in clusters.values():
        cluster.close()

    serial = statistics.median(times["morvane-scan, serial"])
    print(f"\n| run | median s | photos/s | throughput vs morvane-scan |\n|---|---|---|---|")
    for name, values in times.items():
        median = statistics.median(values)
        print(f"| {name} | {median:.2f} | {len(sources) / median:.1f} | {serial / median:.2f} |")
    print(f"\nstarting the LocalCluster: {startup[1]:.1f} s with 1 worker, {startup[2]:.1f} s with 2")


if __name__ == "__main__":
    main()
