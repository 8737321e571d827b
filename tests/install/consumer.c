/* The smallest user of the installed library: prints the version text. */
#include <stdio.h>
#include <string.h>

#include <morvane/morvane.h>

int main(void) {
    const char* version = morvane_get_version_number();
    printf("%s\n", version);
    return strcmp(version, "version of library: 16.1.8.9") == 0 ? 0 : 1;
}
