// Warnings about the platform's failures.
#ifndef QBSUPPORT_MACHINE_WARNING_H
#define QBSUPPORT_MACHINE_WARNING_H

namespace qb_support {

// Writes one line about the calling thread's last platform error, with the system's own text for
// it, to the process's standard output. To be called before anything else changes that error.
void PrintLastErrorWarning(const char* operation);

}  // namespace qb_support

#endif
