/* QBSUPPORT: a plain-text support report about the machine and the process, one section a call.
 *
 * Every call runs on the caller's thread, keeps nothing for the next one and may be made from
 * several threads at once. The text is 8-bit, in the process's ANSI code page. It is exact to the
 * byte: some lines end in CR LF, others in LF, on purpose. Write it in binary; making the line ends
 * alike for display does no harm. */
#ifndef QBSUPPORT_QBSUPPORT_H
#define QBSUPPORT_QBSUPPORT_H

/* The version of this header; the DLL has its own in its version resource. */
#define QBSUPPORT_VERSION_MAJOR 1
#define QBSUPPORT_VERSION_MINOR 0
#define QBSUPPORT_VERSION_PATCH 0
/* In two steps, because # does not expand a macro. */
#define QBSUPPORT_TEXT_OF_(major, minor, patch) #major "." #minor "." #patch
#define QBSUPPORT_TEXT_OF(major, minor, patch) QBSUPPORT_TEXT_OF_(major, minor, patch)
#define QBSUPPORT_VERSION \
    QBSUPPORT_TEXT_OF(QBSUPPORT_VERSION_MAJOR, QBSUPPORT_VERSION_MINOR, QBSUPPORT_VERSION_PATCH)

#ifdef __cplusplus
extern "C" {
#else
#include <stdbool.h>
#endif

/** The calling convention, whatever a host's compiler is told to use as its own. */
#ifdef _WIN32
#define QBSUPPORT_CALL __cdecl
#else
#define QBSUPPORT_CALL
#endif

/** What a section reports: the `kind` of QbSupportGetInfo. */
enum QbSupportKind {
    QbSupportBanner = 1,            /**< where to send the report, an address that is set when the
                                         library is built, and the privacy statement */
    QbSupportDateTime = 2,          /**< local date and time, time zone */
    QbSupportOperatingSystem = 3,   /**< Windows release, edition, version and build, as Windows
                                         tells them to this process: see the host's manifest in
                                         the page on hosting; fails for an unknown version */
    QbSupportUname = 4,             /**< heading only */
    QbSupportUserName = 5,          /**< the user's account name and display name */
    QbSupportLocale = 6,            /**< run-time and Windows locale settings */
    QbSupportHardware = 7,          /**< the processor; fails when Windows describes it in part */
    QbSupportMemory = 8,            /**< memory of the system and of this process */
    QbSupportSystemDirectories = 9, /**< system directories with their attributes */
    QbSupportAppDirectory = 10,     /**< one directory line; argument: the directory */
    QbSupportRegistry = 11,         /**< heading and user root key; argument: the key's path */
    QbSupportUserAppKey = 12,       /**< one HKEY_CURRENT_USER line; argument: the key's path */
    QbSupportMachineAppKey = 13,    /**< one HKEY_LOCAL_MACHINE line; argument: the key's path */
    QbSupportApplication = 14,      /**< the host's executable and its environment variables */
    QbSupportEnvironment = 15,      /**< one environment variable; argument: its name, never that of
                                         a secret: its value goes into the report; a name longer
                                         than 32,766 characters counts as not set */
    QbSupportModules = 16,          /**< loaded modules; argument: an executable's file name, or
                                         none for this process; fails when no such process runs;
                                         a walk that fails writes a warning to standard output */
    QbSupportModule = 17,           /**< one module's version; argument: its file name or path */
    QbSupportLimits = 18,           /**< heading only */
    QbSupportReserved = 19,         /**< always fails */
    QbSupportDisplay = 20           /**< monitors and screen resolution */
};

/** How a section is written: the `flags` of QbSupportGetInfo, combined with `|`. Other bits are
 * ignored. */
enum QbSupportFlags {
    QbSupportFlagHeadings = 1,  /**< start the section with its title and underline; nothing for
                                     kinds 1, 10, 12, 13, 15 and 17 */
    QbSupportFlagSeparator = 2, /**< end the section with an empty line; nothing for kinds 10, 12,
                                     13 and 17. Kinds 5 to 8, 16 and 20 then end in two: 5 to 7
                                     add both, 8, 16 and 20 have one without this flag too */
    QbSupportFlagIndent = 4     /**< indent content lines by three spaces; nothing for kinds 1, 4
                                     and 18 */
};

/**
 * Builds one section of the report.
 *
 * @param kind      the section, one of QbSupportKind; any other number fails
 * @param flags     QbSupportFlags, or 0
 * @param buffer    receives the NUL-terminated text, which the caller owns and gives back through
 *                  QbSupportReleaseBuffer; must not be null; left as it was on failure
 * @param argument  what the kind takes (see QbSupportKind), NUL-terminated, in the ANSI code page;
 *                  null is the same as an empty text
 * @return 1 when a buffer was handed out; 0 when the kind is unknown, the section has nothing
 *         valid to report, or memory ran out
 */
int QBSUPPORT_CALL QbSupportGetInfo(int kind, unsigned int flags, char** buffer,
                                    const char* argument);

/**
 * Frees a buffer that QbSupportGetInfo handed out. The host's own `free` must not be used: it may
 * belong to another heap.
 *
 * @param buffer  the buffer, or null for no effect
 * @return always true
 */
bool QBSUPPORT_CALL QbSupportReleaseBuffer(char* buffer);

#ifdef __cplusplus
}
#endif

#endif
