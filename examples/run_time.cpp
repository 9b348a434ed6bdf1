// Prints a few sections: run_time [LIBRARY]. Finds the library at run time, so that the program
// starts without it too.
#include <algorithm>
#include <iostream>
#include <optional>
#include <string>

#include <qbsupport/qbsupport.hpp>

int main(int count, char** arguments) {
    // A product passes the full path of the file that it installed, so that no other directory's
    // file can take its place.
    const qbsupport::Library library(count > 1 ? arguments[1] : qbsupport::kLibraryFileName);
    if (!library.IsLoaded()) {
        std::cerr << "No support report: " << library.Error() << '\n';
        return 1;
    }
    for (const int kind : {QbSupportOperatingSystem, QbSupportHardware, QbSupportMemory}) {
        std::optional<std::string> text = library.Section(kind);
        if (text) {
            // Standard output is in text mode, where each LF becomes CR LF by itself.
            text->erase(std::remove(text->begin(), text->end(), '\r'), text->end());
            std::cout << *text;
        }
    }
    return 0;
}
