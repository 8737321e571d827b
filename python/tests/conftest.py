"""Scenes and fixtures of the Python tests: page photos built in code with
their corners known, the bundled sample photo, a LocalCluster of two worker
processes."""
import logging
import os

import numpy as np
import pytest

import morvane

SAMPLE = os.path.join(os.path.dirname(__file__), "..", "..", "samples", "page.jpg")

# A page in perspective in an 800 x 600 photo: top-left, top-right, bottom-right, bottom-left.
PAGE = [(120, 90), (690, 70), (660, 520), (140, 540)]


def page_photo(width=800, height=600, corners=PAGE, seed=1):
    """A gray photo of the page given by its corners: bright paper with rows of
    dark marks, on a darker, slightly noisy desk."""
    q = np.asarray(corners, dtype=float)
    y, x = np.mgrid[0:height, 0:width] + 0.5
    inside = np.ones((height, width), bool)
    for k in range(4):
        (ax, ay), (bx, by) = q[k], q[(k + 1) % 4]
        inside &= (bx - ax) * (y - ay) - (by - ay) * (x - ax) >= 0
    photo = (np.where(inside, 205, 70) + np.random.default_rng(seed).integers(-3, 5, (height, width))).astype(np.uint8)
    # Short strokes in rows, placed on the page by bilinear blending of its corners.
    steps = np.arange(0, 0.02, 0.002)
    u, v = np.meshgrid((np.arange(0.12, 0.88, 0.035)[:, None] + steps).ravel(),
                       (np.arange(0.15, 0.85, 0.06)[:, None] + steps).ravel())
    u, v = u.ravel()[:, None], v.ravel()[:, None]
    points = (1 - u) * (1 - v) * q[0] + u * (1 - v) * q[1] + u * v * q[2] + (1 - u) * v * q[3]
    photo[points[:, 1].astype(int), points[:, 0].astype(int)] = 40
    return photo


def whole(image):
    """The image's own corners: straightening with them gives the whole image."""
    height, width = image.shape[:2]
    return [(0, 0), (width - 1, 0), (width - 1, height - 1), (0, height - 1)]


@pytest.fixture(scope="session")
def sample():
    return morvane.read_image(SAMPLE)


@pytest.fixture(scope="session")
def cluster():
    distributed = pytest.importorskip("distributed")
    with distributed.LocalCluster(n_workers=2, threads_per_worker=1, processes=True, dashboard_address="localhost:0",
                                  silence_logs=logging.ERROR) as local_cluster:
        yield local_cluster
