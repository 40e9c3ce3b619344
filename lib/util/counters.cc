// The process-wide counters and switches, apart from what uses them: a shared library that rests on
// the runtime library brings the functions along and leaves these out.

#include "lib/util/accounting.h"
#include "lib/util/checked_files.h"

int _MallocChkNbBytes = 0;
int _MallocChkStrBytes = 0;
int _MallocChkTrace = 0;
int _MallocChkExitOnErr = 1;
int FilesOpened = 0;
