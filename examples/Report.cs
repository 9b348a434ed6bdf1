// Shows the whole report, or saves it to a file as UTF-8: Report [FILE]. QBSUPPORT.dll must be
// beside the program, which must be built for x64: <PlatformTarget>x64</PlatformTarget>.
using System;
using System.IO;
using System.Runtime.InteropServices;
using System.Text;

internal static class Report {
    private const uint Headings = 1, Separator = 2, Indent = 4;

    // It is ref and not out because the pointer does not change if the section fails.
    [DllImport("QBSUPPORT", CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
    private static extern int QbSupportGetInfo(int kind, uint flags, ref IntPtr buffer,
                                               [MarshalAs(UnmanagedType.LPStr)] string argument);

    // C's bool is one byte.
    [DllImport("QBSUPPORT", CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
    [return:MarshalAs(UnmanagedType.I1)]
    private static extern bool QbSupportReleaseBuffer(IntPtr buffer);

    /// <summary>One section's text, or null if it failed.</summary>
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

    /// <summary>A section and the single lines that belong to it, as (kind, argument).</summary>
    public static string Group(int kind, string argument, params (int, string)[] lines) {
        string text = Section(kind, argument, Headings | Indent);
        if (text == null) {
            // Without the heading, the lines would seem to belong to the section above.
            return null;
        }
        foreach ((int, string) line in lines) {
            text += Section(line.Item1, line.Item2, Indent);
        }
        // The library does not know which line is the last.
        return text + "\r\n";
    }

    private static string WholeReport() {
        // Put your own program's directory, registry keys and modules here.
        string text = "";
        for (int kind = 1; kind <= 8; ++kind) {
            text += Section(kind);
        }
        return text + Group(9, null, (10, @"C:\ProgramData")) +
            Group(11, "Software", (12, @"Software\Microsoft"), (13, @"Software\Microsoft")) +
            Group(14, null, (15, "NUMBER_OF_PROCESSORS")) +
            Group(16, null, (17, "QBSUPPORT.dll")) +
            Section(20);
    }

    private static void Main(string[] arguments) {
        if (arguments.Length > 0) {
            File.WriteAllText(arguments[0], WholeReport());
        } else {
            // Otherwise, a console shows only the letters of its own code page.
            Console.OutputEncoding = new UTF8Encoding(false);
            Console.Write(WholeReport());
        }
    }
}
