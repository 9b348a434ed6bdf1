// The ways in which a host comes to the library, and the edges of its two functions.
#include <gtest/gtest.h>
#include <windows.h>

#include "library.h"

namespace {

TEST(Loading, NamesAndOrdinalsFindTheSameFunctions) {
    const Library library;
    const auto find = [&library](WORD ordinal) {
        return reinterpret_cast<void*>(
            GetProcAddress(static_cast<HMODULE>(library.module), MAKEINTRESOURCEA(ordinal)));
    };
    ASSERT_NE(library.getInfo, nullptr);
    EXPECT_EQ(find(100), reinterpret_cast<void*>(library.getInfo));
    EXPECT_EQ(find(101), reinterpret_cast<void*>(library.release));
    EXPECT_EQ(find(99), nullptr);
    EXPECT_EQ(find(102), nullptr);
}

TEST(Loading, UnknownAndReservedKindsFail) {
    const Library library;
    for (const int kind : {0, kReservedKind, kLastKind + 1, -1, INT_MAX, INT_MIN}) {
        for (unsigned int flags = 0; flags < 8; ++flags) {
            EXPECT_FALSE(library.Report(kind, flags, "argument")) << "kind " << kind;
        }
    }
    EXPECT_TRUE(library.release(nullptr));
}

TEST(Loading, NullAndEmptyArgumentAreTheSame) {
    const Library library;
    for (int kind = 1; kind <= kLastKind; ++kind) {
        if (kind != 2 && kind != 8) {  // time and memory move on
            EXPECT_EQ(library.Report(kind, 0), library.Report(kind, 0, "")) << "kind " << kind;
        }
    }
}

TEST(Loading, HostLinkedWithTheImportLibraryWorks) {
    const std::string command = "\"\"" + ProgramDirectory() + "small_host.exe\" 1 2\"";
    FILE* const pipe = _popen(command.c_str(), "rb");
    ASSERT_NE(pipe, nullptr);
    char text[2000];
    const std::size_t size = std::fread(text, 1, sizeof(text), pipe);
    EXPECT_EQ(_pclose(pipe), 0);
    EXPECT_EQ(std::string(text, size), Library().Report(1, 2).value_or("nothing"));
    EXPECT_EQ(size, 816U);
}

}  // namespace
