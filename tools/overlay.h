// The overlay picture: a reduced copy of the input with the page's outline
// drawn on it, so that a person sees at a glance what was found.
#ifndef MORVANE_TOOLS_OVERLAY_H
#define MORVANE_TOOLS_OVERLAY_H

#include "morvane/morvane.h"
#include "raster.h"

namespace scan {

// Longest side of an overlay, in pixels.
constexpr int kOverlayLongSide = 1200;

// An RGB copy of `image` reduced by a whole factor until its long side is at
// most kOverlayLongSide, averaging each block. When `corners` is not null the
// quadrilateral is drawn in red with its top-left corner marked green.
Raster make_overlay(const Raster& image, const ControlPointCorners* corners);

}  // namespace scan

#endif
