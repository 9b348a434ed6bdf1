/* QBSUPPORT: a plain-text support report about the machine and the process, one section per call.
 *
 * A call runs on the caller's thread and keeps nothing for the next call. Several threads may call
 * at the same time. The text is 8-bit, in the process's ANSI code page, and exact to the byte: some
 * lines end in CR LF and others in LF, on purpose. Write it in binary mode, because text mode would
 * change the line ends. A program that only displays the text may change them. */
#ifndef QBSUPPORT_QBSUPPORT_H
#define QBSUPPORT_QBSUPPORT_H

/* The version of this header. The DLL has its version in its version resource. */
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

/** The calling convention, which does not depend on the options of the host's compiler. */
#ifdef _WIN32
#define QBSUPPORT_CALL __cdecl
#else
#define QBSUPPORT_CALL
#endif

/** What a section reports: the `kind` of QbSupportGetInfo. */
enum QbSupportKind {
    QbSupportBanner = 1,            /**< where to send the report, which is set when the library is
                                         built, and the privacy statement */
    QbSupportDateTime = 2,          /**< local date and time, time zone */
    QbSupportOperatingSystem = 3,   /**< Windows release, edition, version and build. Windows tells
                                         them to a process according to the program's manifest.
                                         Fails if the library does not know the version */
    QbSupportUname = 4,             /**< heading only */
    QbSupportUserName = 5,          /**< the user's account name and display name */
    QbSupportLocale = 6,            /**< run-time and Windows locale settings */
    QbSupportHardware = 7,          /**< the processor. Fails if the registry has an entry for the
                                         processor, but a value in it could not be read */
    QbSupportMemory = 8,            /**< memory of the system and of this process */
    QbSupportSystemDirectories = 9, /**< system directories with their attributes */
    QbSupportAppDirectory = 10,     /**< one directory line; argument: the directory */
    QbSupportRegistry = 11,         /**< heading and user root key; argument: the key's path */
    QbSupportUserAppKey = 12,       /**< one HKEY_CURRENT_USER line; argument: the key's path */
    QbSupportMachineAppKey = 13,    /**< one HKEY_LOCAL_MACHINE line; argument: the key's path */
    QbSupportApplication = 14,      /**< the host's executable, and the environment variables
                                         QB_ROOT_PATH, PRODUCT, PACKET, HOME and TMPDIR */
    QbSupportEnvironment = 15,      /**< one environment variable; argument: its name. The value
                                         goes into the report, so it must not be a secret. A name
                                         longer than 32,766 characters counts as not set */
    QbSupportModules = 16,          /**< the modules of a process; argument: its executable's file
                                         name in the same upper and lower case, or none for this
                                         process. Fails if no such process runs. Writes a warning
                                         to standard output if it cannot list the modules */
    QbSupportModule = 17,           /**< one module's version; argument: its file name or path */
    QbSupportLimits = 18,           /**< heading only */
    QbSupportReserved = 19,         /**< always fails */
    QbSupportDisplay = 20           /**< monitors and screen resolution */
};

/** How a section is written: the `flags` of QbSupportGetInfo, combined with `|`. Other bits have no
 * effect. */
enum QbSupportFlags {
    QbSupportFlagHeadings = 1,  /**< start the section with its underlined title. No effect on the
                                     kinds 1, 10, 12, 13, 15 and 17 */
    QbSupportFlagSeparator = 2, /**< end the section with an empty line, or with two for the kinds
                                     5 to 8, 16 and 20. No effect on the kinds 10, 12, 13 and 17.
                                     The kinds 8, 16 and 20 end with one even without this flag */
    QbSupportFlagIndent = 4     /**< indent content lines by three spaces. No effect on the kinds
                                     1, 4 and 18 */
};

/**
 * Builds one section of the report.
 *
 * @param kind      the section, one of QbSupportKind; any other number fails
 * @param flags     QbSupportFlags, or 0
 * @param buffer    receives the NUL-terminated text, which the caller owns and must release with
 *                  QbSupportReleaseBuffer; must not be null; unchanged on failure
 * @param argument  what the kind takes (see QbSupportKind), NUL-terminated, in the ANSI code page;
 *                  null is the same as an empty text
 * @return 1 if a buffer was handed out; 0 if the kind is unknown, the section has nothing
 *         valid to report, or memory ran out
 */
int QBSUPPORT_CALL QbSupportGetInfo(int kind, unsigned int flags, char** buffer,
                                    const char* argument);

/**
 * Frees a buffer that QbSupportGetInfo handed out. Do not use the host's own `free`, because it may
 * belong to another heap.
 *
 * @param buffer  the buffer, or null, which has no effect
 * @return always true
 */
bool QBSUPPORT_CALL QbSupportReleaseBuffer(char* buffer);

#ifdef __cplusplus
}
#endif

#endif
