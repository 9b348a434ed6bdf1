/* The smallest host: writes one section to standard output. Arguments: kind, flags, and the
 * section's own argument. */
#include <fcntl.h>
#include <io.h>
#include <stdio.h>
#include <stdlib.h>

#include "qbsupport/qbsupport.h"

int main(int count, char** arguments) {
    char* text = NULL;
    if (count < 3 || QbSupportGetInfo(atoi(arguments[1]), (unsigned int)atoi(arguments[2]), &text,
                                      count > 3 ? arguments[3] : NULL) == 0) {
        return 1;
    }
    _setmode(_fileno(stdout), _O_BINARY);
    fputs(text, stdout);
    QbSupportReleaseBuffer(text);
    return 0;
}
