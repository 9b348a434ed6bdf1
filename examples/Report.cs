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
    public static string Section(int kind, string argument = null) {
        IntPtr buffer = IntPtr.Zero;
        if (QbSupportGetInfo(kind, Headings | Separator | Indent, ref buffer, argument) == 0) {
            return null;
        }
        try {
            return Marshal.PtrToStringAnsi(buffer);
        } finally {
            QbSupportReleaseBuffer(buffer);
        }
    }

    private static void Main() {
        // Date and time, operating system, hardware, memory, display.
        foreach (int kind in new[] { 2, 3, 7, 8, 20 }) {
            Console.Write(Section(kind));
        }
    }
}
