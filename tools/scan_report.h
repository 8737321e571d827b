// What morvane-scan prints about one input: the human summary, the progress
// line of a batch, the JSON object and the corners line.
#ifndef MORVANE_TOOLS_SCAN_REPORT_H
#define MORVANE_TOOLS_SCAN_REPORT_H

#include <string>

#include "scan_job.h"

namespace scan {

// Several lines, each ending in a newline.
std::string summary_text(const JobReport& report);

// "[2/5] a.jpg -> out/a.jpg: page found, 1049 x 1517, 0.41 s"
std::string progress_line(const JobReport& report, std::size_t index, std::size_t count);

// One line without a newline.
std::string json_report(const JobReport& report);

// {"corners": [[x,y],[x,y],[x,y],[x,y]]} or {"corners": null}
std::string corners_line(const JobReport& report);

}  // namespace scan

#endif
