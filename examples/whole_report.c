/* Shows the whole report, or saves it to a file: whole_report [FILE]. Links the library. */
#include <stdio.h>

#include <qbsupport/qbsupport.h>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <windows.h>
#endif

enum {
    kHeaded = QbSupportFlagHeadings | QbSupportFlagIndent, /* single lines follow this section */
    kWhole = kHeaded | QbSupportFlagSeparator,
    kLine = QbSupportFlagIndent
};

struct Part {
    int kind;
    unsigned int flags;
    const char* argument;
    const char* below; /* an empty line after the last single line, which has none of its own */
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

/* A section that fails is left out, and the others are still written. Only its single lines are
   left out too, because they would seem to belong to the section above. */
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

/* Always in binary, because the texts contain their line ends. */
static FILE* Open(const char* name) {
    if (name != NULL) {
        return fopen(name, "wb");
    }
#ifdef _WIN32
    _setmode(_fileno(stdout), _O_BINARY);
    setvbuf(stdout, NULL, _IOFBF, 1 << 20); /* so that no character is written in two parts */
    SetConsoleOutputCP(GetACP()); /* the report's code page, which the console keeps afterwards */
#endif
    return stdout;
}

int main(int count, char** arguments) {
    FILE* const file = Open(count > 1 ? arguments[1] : NULL);
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
        fprintf(stderr, "The report cannot be written.\n");
    }
    return complete ? 0 : 1;
}
