// What this build of the library offers, found by asking it rather than
// kept in a list: each search or method runs once on a small scene drawn
// here whose answer is known, and counts as offered when it gives that
// answer. The library gains its methods one by one; --help and the checks
// of the command line stay true as it does.
#ifndef MORVANE_TOOLS_LIBRARY_OFFER_H
#define MORVANE_TOOLS_LIBRARY_OFFER_H

namespace scan {

// The corrector finds a page by its edges (the edge-only mode).
bool edge_search_offered();

// The default mode searches the page's text as well: it finds a page whose
// edges are out of view.
bool text_search_offered();

// The corner search method (0 to 7) finds a plain page on a dark table.
bool engine_method_offered(int method);

// The resolution estimate measures the text of a page: on one whose
// characters are half again as tall as at 300 dots per inch it answers
// something else than 300, the answer of an analysis that found nothing.
bool resolution_estimate_offered();

}  // namespace scan

#endif
