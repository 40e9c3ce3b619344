// What keeps the library in memory. Both are changed with PR_AtomicIncrement and PR_AtomicDecrement
// only.
#ifndef ORVA_HOST_COUNTERS_H_
#define ORVA_HOST_COUNTERS_H_

#include <prtypes.h>

extern PRInt32 g_InstanceCount;  // live factories and detectors
extern PRInt32 g_LockCount;      // outstanding factory locks

#endif  // ORVA_HOST_COUNTERS_H_
