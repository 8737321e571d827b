"""Straightens many photos on a Dask cluster, one task a file.

    python3 -m morvane.batch INPUTS... -o OUTDIR [--scheduler ADDRESS]

INPUTS are JPEG or PNG files, or folders whose JPEG and PNG files are taken.
Each task reads one file, finds the page, straightens it and writes it to
OUTDIR under the input's name (JPEG or PNG like the input, as morvane-scan -d
does) through a temporary file renamed into place. Without --scheduler a
LocalCluster of worker processes on this machine runs the tasks; with it, the
cluster at ADDRESS does, whose workers must have this package and see the same
files.

A file whose output exists already is skipped, so that running the same
command again resumes an interrupted batch; a file whose page is not found
gets no output and is searched again by the next run. A file that fails is
reported and the rest go on; when a worker process dies, Dask starts another
and runs its tasks elsewhere. The reports, OUTDIR/morvane-batch.csv and
OUTDIR/morvane-batch.json, hold one record a file. Exit codes: 0 every page
found (or skipped), 1 some pages not found, 2 some files failed, or a usage error.
"""
import argparse
import contextlib
import csv
import json
import logging
import os
import sys
import tempfile

import morvane

IMAGE_SUFFIXES = (".jpg", ".jpeg", ".png")
REPORT_NAME = "morvane-batch"
FIELDS = ("input", "output", "status", "code", "meaning", "corners", "width", "height", "error")


def _record(source, target, status, **values):
    record = dict.fromkeys(FIELDS, None)
    record.update(input=source, output=target, status=status, meaning="", error="")
    record.update(values)
    return record


def straighten_file(source, target, mode="hybrid"):
    """One task: read source, find the page, straighten it and write target.

    Returns the file's record, with the status "found", "not found" or
    "failed"; the file's own problems are reported there, never raised.
    """
    try:
        photo = morvane.read_image(source)
        page = morvane.find_page(photo, mode=mode)
        if not page.found:
            return _record(source, target, "not found", code=page.code, meaning=page.meaning)
        straightened = morvane.straighten(photo, page.corners)
        morvane.write_image(target, straightened)
        return _record(source, target, "found", code=page.code, meaning=page.meaning,
                       corners=page.corners.tolist(), width=straightened.shape[1], height=straightened.shape[0])
    except Exception as error:  # any failure of one file is that file's result
        return _record(source, target, "failed", error=str(error) or type(error).__name__)


def plan(inputs, outdir):
    """(input, output) pairs in the order given, folders expanded to their
    JPEG and PNG files in name order. Raises ValueError when two inputs would
    be written to the same output."""
    pairs, sources_by_name = [], {}
    for path in inputs:
        if os.path.isdir(path):
            sources = [os.path.join(path, name) for name in sorted(os.listdir(path))
                       if name.lower().endswith(IMAGE_SUFFIXES)]
        else:
            sources = [path]
        for source in sources:
            name = os.path.basename(source)
            if not name.lower().endswith(IMAGE_SUFFIXES):
                name += ".png"
            if name in sources_by_name:
                raise ValueError(f"'{sources_by_name[name]}' and '{source}' would both be written to '{name}'")
            sources_by_name[name] = source
            pairs.append((source, os.path.join(outdir, name)))
    return pairs


@contextlib.contextmanager
def _client(scheduler, workers):
    from distributed import Client, LocalCluster

    if scheduler:
        with Client(scheduler) as client:
            yield client
        return
    # One thread a worker process: a file that brings its worker down takes no
    # other file's task with it. The scheduler's web server takes a free port,
    # so that batches side by side do not compete for the default one.
    with LocalCluster(n_workers=workers or os.cpu_count(), threads_per_worker=1, processes=True,
                      dashboard_address="localhost:0", silence_logs=logging.ERROR) as cluster:
        with Client(cluster) as client:
            yield client


def run(inputs, outdir, scheduler=None, workers=None, mode="hybrid", progress=True):
    """Straightens inputs into outdir as Dask tasks, on the cluster at the
    scheduler's address or on a LocalCluster of workers processes (default:
    one a core); writes the reports and returns the records, one a file, in
    input order."""
    from distributed import progress as progress_bar

    pairs = plan(inputs, outdir)
    os.makedirs(outdir, exist_ok=True)
    records = [_record(source, target, "skipped") if os.path.exists(target) else None for source, target in pairs]
    todo = [i for i, record in enumerate(records) if record is None]
    if todo:
        with _client(scheduler, workers) as client:
            futures = client.map(straighten_file, [pairs[i][0] for i in todo], [pairs[i][1] for i in todo],
                                 mode=mode)
            if progress:
                progress_bar(futures)
                print()
            for i, future in zip(todo, futures):
                try:
                    records[i] = future.result()
                except Exception as error:  # a task Dask gave up on, as when it brought down worker after worker
                    records[i] = _record(*pairs[i], "failed", error=f"{type(error).__name__}: {error}")
    write_reports(records, os.path.join(outdir, REPORT_NAME))
    return records


def _replace_atomically(path, write):
    folder = os.path.dirname(path) or "."
    with tempfile.NamedTemporaryFile("w", dir=folder, prefix="." + os.path.basename(path) + ".",
                                     delete=False, newline="") as temporary:
        try:
            write(temporary)
        except BaseException:
            os.unlink(temporary.name)
            raise
    os.replace(temporary.name, path)


def write_reports(records, stem):
    """stem.csv (corners as eight numbers x0 y0 ... x3 y3) and stem.json."""
    def write_csv(stream):
        writer = csv.DictWriter(stream, FIELDS)
        writer.writeheader()
        for record in records:
            corners = record["corners"]
            writer.writerow(dict(record, corners=" ".join(str(v) for xy in corners for v in xy) if corners else ""))

    _replace_atomically(stem + ".csv", write_csv)
    _replace_atomically(stem + ".json", lambda stream: json.dump(records, stream, indent=1))


def summary(records):
    """The count of files of each status."""
    counts = dict.fromkeys(("found", "not found", "failed", "skipped"), 0)
    for record in records:
        counts[record["status"]] += 1
    return counts


def main(argv=None):
    parser = argparse.ArgumentParser(
        prog="python3 -m morvane.batch",
        description="Straightens page photos as Dask tasks, one a file; a re-run skips the outputs already written.")
    parser.add_argument("inputs", nargs="+", metavar="INPUT", help="JPEG or PNG files, or folders of them")
    parser.add_argument("-o", dest="outdir", required=True, metavar="OUTDIR", help="folder of the straightened pages")
    parser.add_argument("--scheduler", metavar="ADDRESS",
                        help="a running Dask scheduler (tcp://host:8786); default: a LocalCluster on this machine")
    parser.add_argument("--workers", type=int, metavar="N",
                        help="worker processes of the LocalCluster (default: one a core)")
    parser.add_argument("--edges-only", action="store_true", help="find pages by their edges alone")
    parser.add_argument("--quiet", action="store_true", help="no progress bar")
    args = parser.parse_args(argv)
    if args.scheduler and args.workers is not None:
        parser.error("--workers sizes the LocalCluster; it goes without --scheduler")
    if args.workers is not None and args.workers < 1:
        parser.error("--workers needs at least 1")
    try:
        records = run(args.inputs, args.outdir, args.scheduler, args.workers,
                      "edges" if args.edges_only else "hybrid", not args.quiet)
    except (ValueError, OSError) as error:
        print(f"morvane.batch: {error}", file=sys.stderr)
        return 2
    for record in records:
        if record["status"] == "failed":
            print(f"morvane.batch: {record['input']}: {record['error']}", file=sys.stderr)
    counts = summary(records)
    print(f"{len(records)} file{'' if len(records) == 1 else 's'}: {counts['found']} found, "
          f"{counts['not found']} not found, {counts['failed']} failed, {counts['skipped']} skipped "
          f"(output already there); reports in {os.path.join(args.outdir, REPORT_NAME)}.csv and .json")
    return 2 if counts["failed"] else 1 if counts["not found"] else 0


if __name__ == "__main__":
    # Run from the package rather than as __main__, so that the tasks reach
    # the workers as morvane.batch functions.
    from morvane.batch import main as batch_main

    sys.exit(batch_main())
