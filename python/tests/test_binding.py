"""The numpy functions: the same corners as the C interface, arrays of each
kind in and out, clear errors, and the GIL released in every library call."""
import json
import os
import subprocess
import sys
import threading
import time

import numpy as np
import pytest
from numpy.testing import assert_array_equal

import morvane
from conftest import PAGE, SAMPLE, page_photo, whole


@pytest.mark.parametrize("photo, options, arguments", [
    ("sample", {}, []),
    ("sample", {"mode": "edges"}, ["--edges-only"]),
    ("sample", {"engine": 0}, ["--engine", "0"]),
    ("synthetic", {}, []),
    ("synthetic", {"engine": 6}, ["--engine", "6"]),
])
def test_corners_and_pages_are_those_of_the_command_line_tool(photo, options, arguments, tmp_path):
    if not os.environ.get("MORVANE_SCAN"):
        pytest.skip("MORVANE_SCAN names no morvane-scan program")
    path = SAMPLE
    if photo == "synthetic":
        path = str(tmp_path / "photo.png")
        morvane.write_image(path, page_photo())
    answer = subprocess.run([os.environ["MORVANE_SCAN"], path, "--corners-only", "-o", str(tmp_path / "page.png"),
                             *arguments], capture_output=True, text=True, check=True).stdout
    image = morvane.read_image(path)
    page = morvane.find_page(image, **options)
    assert page.found
    assert page.corners.tolist() == json.loads(answer.splitlines()[-1])["corners"]
    assert_array_equal(morvane.straighten(image, page.corners), morvane.read_image(tmp_path / "page.png"))
    if photo == "synthetic":
        assert np.abs(page.corners - PAGE).max() <= 3


def test_read_image_turns_a_photo_upright_as_its_exif_orientation_says(tmp_path):
    stored = np.zeros((40, 64, 3), np.uint8)
    stored[:, :32] = (220, 30, 30)
    morvane.write_image(tmp_path / "plain.jpg", stored, jpeg_quality=95)
    jpeg = (tmp_path / "plain.jpg").read_bytes()
    # APP1 after the JFIF marker: a big-endian EXIF block with Orientation 6, a quarter turn clockwise.
    exif = b"Exif\0\0MM\0\x2a\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06" + bytes(6)
    end_of_jfif = 4 + int.from_bytes(jpeg[4:6], "big")
    (tmp_path / "photo.jpg").write_bytes(
        jpeg[:end_of_jfif] + b"\xff\xe1" + (len(exif) + 2).to_bytes(2, "big") + exif + jpeg[end_of_jfif:])
    upright = morvane.read_image(tmp_path / "photo.jpg")
    assert upright.shape == (64, 40, 3)
    assert (upright[:30, 20, 0] > 200).all() and (upright[34:, 20, 0] < 60).all()  # the red left half is now on top
    assert_array_equal(morvane.read_image(tmp_path / "photo.jpg", orientation=False),
                       morvane.read_image(tmp_path / "plain.jpg"))


def test_arrays_of_each_kind_round_trip(tmp_path):
    gray = page_photo(203, 150, [(30, 20), (170, 25), (160, 130), (35, 120)])
    rgb = np.dstack([gray, gray // 2, 255 - gray])
    bitonal = gray < 128
    for c in range(3):
        assert_array_equal(morvane.straighten(rgb, whole(rgb))[..., c],
                           morvane.straighten(np.ascontiguousarray(rgb[..., c]), whole(gray)))
    # With its own corners, output pixel (u, v) of a bitonal image is input pixel ((W - 1) u / W, (H - 1) v / H).
    v, u = np.mgrid[0:150, 0:203]
    assert_array_equal(morvane.straighten(bitonal, whole(bitonal)), bitonal[149 * v // 150, 202 * u // 203])
    for image in (gray, rgb, bitonal):
        morvane.write_image(tmp_path / "image.png", image)
        written = np.where(image, 0, 255) if image is bitonal else image
        assert_array_equal(morvane.read_image(tmp_path / "image.png"), written)
        # Corners reaching past the image: what lies outside takes the fill.
        outside = morvane.straighten(image, [(-10, 0), (202, 0), (202, 149), (-10, 149)], fill=image is bitonal or 7)
        assert outside.dtype == image.dtype and outside.shape[1] == 213
        assert_array_equal(outside[:, :8], True if image is bitonal else 7)
        assert morvane.binarize(image).shape == morvane.binarize(image, method="multiscale").shape == gray.shape
    bars = np.zeros((20, 70), bool)
    bars[2:5, 30:40] = bars[5, 40] = bars[10:12, 3:65] = True  # two blobs, one touching the other at a corner
    for connectivity, count in ((8, 2), (4, 3)):
        labels, found = morvane.label_blobs(bars, connectivity=connectivity)
        assert found == count and labels.dtype == np.int32
        assert_array_equal(labels > 0, bars)
    edge = np.full((120, 160), 230, np.uint8)
    edge[:, 80:] = 20
    segments = morvane.line_segments(edge)
    assert segments.shape[1] == 7 and len(segments) >= 1
    assert np.allclose(segments[0, [0, 2]], 79.5, atol=2)
    assert morvane.line_segments(np.full((50, 50), 128, np.uint8)).shape == (0, 7)


GRAY = np.zeros((40, 50), np.uint8)
BAD_INPUTS = [
    (lambda: morvane.find_page(GRAY.astype(np.float32)), TypeError, "uint8 array"),
    (lambda: morvane.find_page(list(GRAY)), TypeError, "numpy array"),
    (lambda: morvane.find_page(np.zeros((40, 50, 4), np.uint8)), ValueError, "HxWx3"),
    (lambda: morvane.find_page(np.zeros((0, 5), np.uint8)), ValueError, "empty"),
    (lambda: morvane.find_page(np.zeros((40, 100), np.uint8)[:, ::2]), ValueError, "C-contiguous"),
    (lambda: morvane.find_page(GRAY, mode="text"), ValueError, "mode"),
    (lambda: morvane.find_page(GRAY, engine=8), ValueError, "0 to 7"),
    (lambda: morvane.straighten(GRAY, [(0, 0)] * 3), ValueError, "4x2"),
    (lambda: morvane.straighten(GRAY, [(0, np.nan)] * 4), ValueError, "finite"),
    (lambda: morvane.straighten(GRAY, [(0, 0), (9e5, 0), (9e5, 9e5), (0, 9e5)]), ValueError, "too large"),
    (lambda: morvane.straighten(GRAY, whole(GRAY), fill=(1, 2)), ValueError, "fill"),
    (lambda: morvane.straighten(GRAY), morvane.PageNotFoundError, "no page found"),
    (lambda: morvane.binarize(np.zeros((3, 3), np.uint8)), morvane.MorvaneError, "window size is too large"),
    (lambda: morvane.binarize(GRAY, window=0), ValueError, "window"),
    (lambda: morvane.line_segments(GRAY > 0), ValueError, "gray"),
    (lambda: morvane.label_blobs(GRAY > 0, connectivity=6), ValueError, "4 or 8"),
    (lambda: morvane.read_image("missing.jpg"), morvane.ImageFileError, "no such file"),
    (lambda: morvane.write_image("image.tiff", GRAY), morvane.ImageFileError, "unknown picture format"),
    (lambda: morvane.write_image("image.jpg", GRAY > 0), ValueError, "PNG"),
]


@pytest.mark.parametrize("call, error, words", BAD_INPUTS)
def test_bad_input_raises_a_clear_exception(call, error, words):
    with pytest.raises(error, match=words):
        call()


def test_quality_grades_the_page_or_the_whole_image():
    photo = page_photo()
    assert morvane.quality(photo) > 0.9
    assert morvane.quality(photo, PAGE) >= morvane.quality(photo)  # blobs along the page edge do not count
    assert morvane.quality(photo, [(0, 0), (100, 0), (100, 599), (0, 599)]) == 0.0  # the desk alone


def ran_beside(call):
    """Whether this thread ran while call ran in another. With a switch
    interval longer than the call, only a call that releases the GIL lets it."""
    counter, during = [0], []

    def worker():
        before = counter[0]
        call()
        during.append(counter[0] - before)

    interval = sys.getswitchinterval()
    sys.setswitchinterval(60)
    try:
        thread = threading.Thread(target=worker)
        thread.start()
        while thread.is_alive():
            counter[0] += 1
            time.sleep(0)
        thread.join()
    finally:
        sys.setswitchinterval(interval)
    return during[0] > 0


def test_every_library_call_releases_the_gil(sample):
    gray = np.ascontiguousarray(sample[:, :, 1])
    bitonal = morvane.binarize(gray)
    calls = {
        "find_page": lambda: morvane.find_page(sample),
        "engine": lambda: morvane.find_page(gray, engine=6),
        "straighten": lambda: morvane.straighten(sample, whole(sample), fill=255),
        "binarize": lambda: morvane.binarize(sample),
        "line_segments": lambda: morvane.line_segments(gray),
        "label_blobs": lambda: morvane.label_blobs(bitonal),
        "quality": lambda: morvane.quality(sample),
        "read_image": lambda: morvane.read_image(SAMPLE),
    }
    # A short call may end before a loaded machine schedules this thread at
    # all; one that holds the GIL never lets it run, however often it is tried.
    assert [name for name, call in calls.items() if not any(ran_beside(call) for _ in range(5))] == []
