// Prints the report whose parts the pages show.
#include <iostream>

#include "qbsupport/qbsupport.hpp"

int main() {
    qbsupport::ReportOptions options;
    options.appDirectory = "C:/Tools/Viewer";
    options.userAppKey = "Software\\Microsoft\\Windows NT\\CurrentVersion";
    options.machineAppKey = options.userAppKey;
    options.variables = {"OS", "PROCESSOR_ARCHITECTURE", "NUMBER_OF_PROCESSORS"};
    options.modules = {"kernel32.dll", "user32.dll", "QBSUPPORT.dll"};
    std::cout << qbsupport::WholeReport(options).text;
}
