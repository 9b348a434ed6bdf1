// Prints a report. QBSUPPORT.dll lies beside the program, which must be a 64-bit one:
// <PlatformTarget>x64</PlatformTarget>.
using System;
using System.Runtime.InteropServices;

internal static class Report {
    private const uint Headings = 1, Separator = 2, Indent = 4;

    // The pointer stays as it is when a section fails, hence ref and not out.
    [DllImport("QBSUPPORT", CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
    private static extern int QbSupportGetInfo(int kind, uint flags, ref IntPtr buffer,
                                               [MarshalAs(UnmanagedType.LPStr)] string argument);

    // C's bool is one byte.
    [DllImport("QBSUPPORT", CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
    [return:MarshalAs(UnmanagedType.I1)]
    private static extern bool QbSupportReleaseBuffer(IntPtr buffer);

    /// <summary>One section's text, or null when it has nothing valid to report.</summary>
    public static string Section(int kind, string argument = null,
                                 uint flags = Headings | Separator | Indent) {
        IntPtr buffer = IntPtr.Zero;
        if (QbSupportGetInfo(kind, flags, ref buffer, argument) == 0) {
            return null;
        }
        try {
            return Marshal.PtrToStringAnsi(buffer);
        } finally {
            QbSupportReleaseBuffer(buffer);
        }
    }

    /// <summary>A section whose single lines follow it: (kind, argument) each. One empty line,
    /// which the library cannot set among them, follows the last.</summary>
    public static string Group(int kind, string argument, params (int, string)[] lines) {
        string text = Section(kind, argument, Headings | Indent);
        if (text == null) {
            // Without the heading, the lines would seem to belong to the section above.
            return null;
        }
        foreach ((int, string) line in lines) {
            text += Section(line.Item1, line.Item2, Indent);
        }
        return text + "\r\n";
    }

    private static void Main() {
        // Put your own program's directory, registry keys and modules here.
        for (int kind = 1; kind <= 8; ++kind) {
            Console.Write(Section(kind));
        }
        Console.Write(Group(9, null, (10, @"C:\ProgramData")));
        Console.Write(Group(11, "Software", (12, @"Software\Microsoft"), (13, @"Software\Microsoft")));
        Console.Write(Group(14, null, (15, "NUMBER_OF_PROCESSORS")));
        Console.Write(Group(16, null, (17, "QBSUPPORT.dll")));
        Console.Write(Section(20));
    }
}
