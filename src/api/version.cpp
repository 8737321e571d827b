// The version family: constant texts that identify the build.
#include "morvane/morvane.h"

const char* morvane_get_version_number(void) { return "version of library: 16.1.8.9"; }

const char* morvane_get_branch_name(void) { return "git branch: version_16.1.8.xx"; }

const char* morvane_get_sha(void) { return "git sha: 85f81e8fe173efda1e5b0ddcfa2630298ac03c14"; }
