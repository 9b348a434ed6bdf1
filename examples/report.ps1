# Saves a report. Needs 64-bit PowerShell, 5.1 or 7.
param(
    [string] $File = 'report.txt',
    [string] $Library = (Join-Path $PSScriptRoot '..\bin\QBSUPPORT.dll')
)
$ErrorActionPreference = 'Stop'

# The full path, so that no other directory's file can take the library's place.
$fullPath = (Resolve-Path -LiteralPath $Library).ProviderPath

Add-Type -TypeDefinition @"
using System;
using System.Runtime.InteropServices;

public static class QbSupport
{
    // The pointer stays as it is when a section fails, hence ref and not out.
    [DllImport(@"$fullPath", CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
    private static extern int QbSupportGetInfo(
        int kind, uint flags, ref IntPtr buffer, [MarshalAs(UnmanagedType.LPStr)] string argument);

    // C's bool is one byte.
    [DllImport(@"$fullPath", CallingConvention = CallingConvention.Cdecl, ExactSpelling = true)]
    [return: MarshalAs(UnmanagedType.I1)]
    private static extern bool QbSupportReleaseBuffer(IntPtr buffer);

    public static string Section(int kind, uint flags, string argument)
    {
        IntPtr buffer = IntPtr.Zero;
        if (QbSupportGetInfo(kind, flags, ref buffer, argument) == 0)
        {
            return "";
        }
        string text = Marshal.PtrToStringAnsi(buffer);
        QbSupportReleaseBuffer(buffer);
        return text;
    }
}
"@

# Headings, separators and indent.
$flags = 1 + 2 + 4
# Banner, date and time, operating system, user name, locale, hardware, memory, display.
$kinds = 1, 2, 3, 5, 6, 7, 8, 20
$text = -join ($kinds | ForEach-Object { [QbSupport]::Section($_, $flags, '') })
Set-Content -LiteralPath $File -Value $text -NoNewline -Encoding UTF8
"The report is in $File"
