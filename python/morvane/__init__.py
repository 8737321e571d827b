"""morvane: finds the four corners of a photographed or scanned page and
straightens it, on numpy arrays.

    import morvane
    photo = morvane.read_image("photo.jpg")
    morvane.write_image("page.png", morvane.straighten(photo))

Images are numpy arrays of three kinds: uint8 HxW (gray), uint8 HxWx3 (RGB,
red first) and bool HxW (bitonal, True is ink). Gray and RGB arrays are read
in place, so they must be C-contiguous; bitonal ones are packed into the
library's 1-bit rows. Results come back as arrays of the same kinds.

Corners are 4x2 arrays, one row (x, y) a corner, in the order top-left,
top-right, bottom-right, bottom-left, in pixels of the image with the origin
at the top-left pixel.

Every library call releases the GIL, so that threads straighten photos side
by side. Bad arguments raise TypeError or ValueError; a failure inside the
library raises MorvaneError, and one reading or writing a file ImageFileError.
"""
import numbers
import os
from collections import namedtuple

import numpy as np

from . import _morvane
from ._morvane import ImageFileError, MorvaneError

__all__ = [
    "ImageFileError", "MorvaneError", "PageNotFoundError", "PageResult",
    "binarize", "find_page", "label_blobs", "line_segments", "read_image",
    "resolution", "straighten", "write_image",
]

__version__ = _morvane.library_version().rpartition(" ")[2]

MorvaneError.__doc__ = "A failure inside the library (out of memory, an image it cannot handle, a method it lacks)."
ImageFileError.__doc__ = "An image file that cannot be read or written; the message names the file and the problem."

# The corrector's return codes, and the corner search engine's.
_CHECK_MEANINGS = {
    -3: "a corner lies outside the image",
    -4: "the quadrilateral is too small",
    -5: "the quadrilateral is not convex or a corner angle is too small",
    -6: "the output would be too small compared with the input",
}
_CORRECTOR_MEANINGS = {
    **_CHECK_MEANINGS,
    1: "corners found and accepted",
    2: "the page is already straight",
    3: "no usable result: neither edges nor text gave a page",
    0: "the search failed or the image was refused",
    -7: "the corners from the vanishing points failed their examination",
}
_ENGINE_MEANINGS = {**_CHECK_MEANINGS, 1: "corners found", -1: "no page found"}

_MODES = ("hybrid", "edges")
_BINARIZATION_METHODS = {"sauvola": 0, "multiscale": 1}
# Far beyond any photo, small enough that every size computed from corners stays an integer.
_CORNER_LIMIT = 1_000_000


class PageNotFoundError(MorvaneError):
    """straighten() searched for the page and found none; code and meaning say why."""

    def __init__(self, code, meaning):
        super().__init__(f"no page found: {meaning} (code {code})")
        self.code = code
        self.meaning = meaning


class PageResult(namedtuple("PageResult", "corners code meaning")):
    """The answer of find_page: corners (a 4x2 int32 array, or None when no
    page was found), the library's return code, and its meaning in words."""

    __slots__ = ()

    @property
    def found(self):
        return self.corners is not None


def _integer(value, name):
    if isinstance(value, (bool, np.bool_)) or not isinstance(value, numbers.Integral):
        raise TypeError(f"{name} must be an integer, not {type(value).__name__}")
    return int(value)


def _corner_values(corners):
    """x0, y0, ..., x3, y3 rounded to whole pixels as the library rounds its own, floor(v + 0.5)."""
    try:
        array = np.asarray(corners, dtype=np.float64)
    except (TypeError, ValueError):
        raise TypeError(f"corners must be a 4x2 array of numbers, not {corners!r}") from None
    if array.shape != (4, 2):
        raise ValueError(f"corners must be a 4x2 array (one row of x, y a corner), not of shape {array.shape}")
    if not np.all(np.abs(array) <= _CORNER_LIMIT):
        raise ValueError(f"corners must be finite and within {_CORNER_LIMIT} pixels of the origin: {array.tolist()}")
    return [int(v) for v in np.floor(array + 0.5).ravel()]


def _fill_bytes(image, fill):
    """The fill as the library takes it: one byte a channel of the image."""
    if getattr(image, "dtype", None) == np.bool_:
        if not isinstance(fill, (bool, np.bool_)):
            raise TypeError(f"the fill of a bitonal image is True (ink) or False (paper), not {fill!r}")
        return [0, 0, 0] if fill else [255, 255, 255]
    values = [fill] if np.ndim(fill) == 0 else list(fill)
    if len(values) not in (1, 3) or not all(
            isinstance(v, numbers.Integral) and not isinstance(v, (bool, np.bool_)) and 0 <= v <= 255 for v in values):
        raise ValueError(f"fill must be a gray value or (red, green, blue), integers from 0 to 255, not {fill!r}")
    values = [int(v) for v in values]
    if len(values) == 1:
        return values * 3
    if np.ndim(image) == 2:
        # A colour for a gray image becomes its luminance, as morvane-scan does.
        red, green, blue = values
        return [(299 * red + 587 * green + 114 * blue) // 1000] * 3
    return values


def find_page(image, mode="hybrid", engine=None):
    """Finds the four corners of the page in image.

    mode: "hybrid" (the page's edges, then its text) or "edges" (the edges
        alone), for the corrector, which checks the result (inside the image
        when required, convex, angles, area, size).
    engine: None for the corrector, or a corner search method from 0 to 7
        (0 the corrector's edge search, 6 the staged search of large blobs,
        edges and line segments), which finds corners without rectifying.
    Returns PageResult(corners, code, meaning): corners a 4x2 int32 array in
    image pixels, or None when no page was found; code the library's return
    code (1 found; for the corrector also 2, already straight) and meaning it
    in words.
    """
    if mode not in _MODES:
        raise ValueError(f"mode must be 'hybrid' or 'edges', not {mode!r}")
    if engine is None:
        code, corners = _morvane.find_with_corrector(image, mode == "edges")
        return PageResult(corners, code, _CORRECTOR_MEANINGS.get(code, "unknown return code"))
    if mode != "hybrid":
        raise ValueError("engine and mode='edges' exclude each other: an engine runs its own search")
    code, corners = _morvane.find_with_engine(image, _integer(engine, "engine"))
    return PageResult(corners, code, _ENGINE_MEANINGS.get(code, "unknown return code"))


def straighten(image, corners=None, fill=None):
    """Straightens the page: a projective warp of the quadrilateral of four
    corners onto an upright rectangle whose sides are the mean lengths of
    the opposite sides, plus one.

    corners: a 4x2 array (top-left, top-right, bottom-right, bottom-left),
        rounded to whole pixels; corners may lie outside the image. None finds
        the page with find_page(image) first and raises PageNotFoundError
        when there is none.
    fill: the colour of pixels whose source lies outside the image: a gray
        value (0 to 255) or (red, green, blue); True (ink) or False (paper) for
        a bitonal image. None: the paper colour seen along the page's edges.
    Returns an array of the image's kind.
    """
    if corners is None:
        page = find_page(image)
        if not page.found:
            raise PageNotFoundError(page.code, page.meaning)
        corners = page.corners
    values = _corner_values(corners)
    return _morvane.straighten(image, values, None if fill is None else _fill_bytes(image, fill))


def binarize(image, method="sauvola", window=35, k=0.1):
    """Ink and paper: a bool array of the image's height and width, True for ink.

    method: "sauvola" (a threshold from the mean and deviation in a window
        around each pixel) or "multiscale" (the same at one window on a
        pyramid of the page, so that large print stays solid; it chooses
        its own window and keeps the one-pixel frame paper).
    window: side of the Sauvola window in pixels, at least 1; windows above
        one eleventh of the image's shorter side are narrowed to it.
    k: the weight of the deviation, from 0 to 1.
    A bitonal image comes back as it is.
    """
    if method not in _BINARIZATION_METHODS:
        raise ValueError(f"method must be 'sauvola' or 'multiscale', not {method!r}")
    window = _integer(window, "window")
    if window < 1:
        raise ValueError(f"window must be at least 1 pixel, not {window}")
    if not isinstance(k, numbers.Real) or not 0.0 <= k <= 1.0:
        raise ValueError(f"k must be a number from 0 to 1, not {k!r}")
    return _morvane.binarize(image, _BINARIZATION_METHODS[method], window, float(k))


def resolution(image):
    """The page's resolution in dots per inch, estimated from the size of its
    characters; 300 when the library cannot tell."""
    return _morvane.resolution(image)


def line_segments(image):
    """The line segments of a gray image (uint8 HxW), by a detector with
    a-contrario validation whose collinear pieces are linked.

    Returns an Nx7 float64 array, one row a segment: x1, y1, x2, y2 (its ends,
    the brighter side on the left when walking from the first to the second),
    width, p (the angle tolerance as a fraction of pi) and log_nfa (-log10 of
    its number of false alarms in noise: higher is surer); rows in falling
    order of the length of the segment's longest piece.
    """
    return _morvane.line_segments(image)


def label_blobs(bitonal, connectivity=8):
    """Connected components of a bitonal image (bool HxW, True is ink; a gray
    uint8 HxW image counts every value but 255 as ink).

    connectivity: 8, or 4 (pixels touching only at a corner are apart).
    Returns (labels, count): labels an int32 HxW array, 0 for the background
    and 1 to count for the components, in the order the library formed them.
    """
    connectivity = _integer(connectivity, "connectivity")
    if connectivity not in (4, 8):
        raise ValueError(f"connectivity must be 4 or 8, not {connectivity}")
    return _morvane.label_blobs(bitonal, connectivity)


def read_image(path, orientation=True):
    """Reads a JPEG or PNG file, told by its content, into uint8 HxW (gray
    files) or HxWx3 (all others; 16-bit, paletted and transparent PNGs are
    converted, transparency over white) with the codecs of morvane-scan.

    orientation: True turns a photo upright as its EXIF orientation says, as
    morvane-scan and image viewers do; False gives the pixels as stored.
    """
    return _morvane.read_image(os.fspath(path), bool(orientation))


def write_image(path, image, png_level=1, jpeg_quality=92):
    """Writes image as PNG or JPEG by the extension of path (.png, .jpg,
    .jpeg), bitonal images as 1-bit PNG with black ink, through a temporary
    file that is renamed into place: no half-written file is ever left.

    png_level: zlib level 0 to 9; jpeg_quality: 1 to 100.
    """
    png_level = _integer(png_level, "png_level")
    jpeg_quality = _integer(jpeg_quality, "jpeg_quality")
    if not 0 <= png_level <= 9 or not 1 <= jpeg_quality <= 100:
        raise ValueError(f"png_level must be 0 to 9 and jpeg_quality 1 to 100, not {png_level} and {jpeg_quality}")
    return _morvane.write_image(os.fspath(path), image, png_level, jpeg_quality)
