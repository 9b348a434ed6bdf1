/* Writes the whole report to a file: whole_report [FILE]. Links the library. */
#include <stdio.h>

#include <qbsupport/qbsupport.h>

enum {
    kHeaded = QbSupportFlagHeadings | QbSupportFlagIndent, /* lines of the next calls go below */
    kWhole = kHeaded | QbSupportFlagSeparator,
    kLine = QbSupportFlagIndent
};

struct Part {
    int kind;
    unsigned int flags;
    const char* argument;
    const char* below; /* the empty line that single lines do not end with themselves */
};

/* Put your own program's directory, registry keys and modules here. */
static const struct Part kParts[] = {
    {QbSupportBanner, kWhole, NULL, ""},
    {QbSupportDateTime, kWhole, NULL, ""},
    {QbSupportOperatingSystem, kWhole, NULL, ""},
    {QbSupportUserName, kWhole, NULL, ""},
    {QbSupportLocale, kWhole, NULL, ""},
    {QbSupportHardware, kWhole, NULL, ""},
    {QbSupportMemory, kWhole, NULL, ""},
    {QbSupportDisplay, kWhole, NULL, ""},
    {QbSupportSystemDirectories, kHeaded, NULL, ""},
    {QbSupportAppDirectory, kLine, "C:\\ProgramData", "\r\n"},
    {QbSupportRegistry, kHeaded, "Software", ""},
    {QbSupportUserAppKey, kLine, "Software\\Microsoft", ""},
    {QbSupportMachineAppKey, kLine, "Software\\Microsoft", "\r\n"},
    {QbSupportApplication, kHeaded, NULL, ""},
    {QbSupportEnvironment, kLine, "NUMBER_OF_PROCESSORS", "\r\n"},
    {QbSupportModules, kHeaded, NULL, ""},
    {QbSupportModule, kLine, "QBSUPPORT.dll", "\r\n"},
};

/* A section with nothing valid to report is left out, and is no reason to do without the others;
   only its own lines, which would stand below another one then. */
static int WritePart(const struct Part* part, int* hasSection, FILE* file) {
    const int isLine = part->flags == kLine;
    char* text = NULL;
    int written = 1;
    if (isLine && !*hasSection) {
        return 1;
    }
    if (QbSupportGetInfo(part->kind, part->flags, &text, part->argument)) {
        written = fputs(text, file) >= 0;
        QbSupportReleaseBuffer(text);
    }
    *hasSection = isLine || text != NULL;
    return written && fputs(part->below, file) >= 0;
}

int main(int count, char** arguments) {
    const char* const name = count > 1 ? arguments[1] : "report.txt";
    /* In binary, because the texts have their line ends already. */
    FILE* const file = fopen(name, "wb");
    int complete = file != NULL;
    int hasSection = 0;
    size_t i = 0;
    for (; complete && i < sizeof(kParts) / sizeof(kParts[0]); ++i) {
        complete = WritePart(&kParts[i], &hasSection, file);
    }
    if (file != NULL && fclose(file) != 0) {
        complete = 0;
    }
    if (!complete) {
        fprintf(stderr, "cannot write %s\n", name);
        return 1;
    }
    printf("The report is in %s\n", name);
    return 0;
}
