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

$headings = 1; $separator = 2; $indent = 4

# A section whose single lines (kind and argument each) follow it. One empty line, which the library
# cannot set among them, follows the last.
function Get-Group([int] $Kind, [string] $Argument, [object[][]] $Lines) {
    $section = [QbSupport]::Section($Kind, $headings + $indent, $Argument)
    # Without the heading, the lines would seem to belong to the section above.
    if ($section -eq '') { return '' }
    $section + (-join ($Lines | ForEach-Object { [QbSupport]::Section($_[0], $indent, $_[1]) })) + "`r`n"
}

# Put your own program's directory, registry keys and modules here.
$key = 'Software\Microsoft'
$text = (-join (1..8 | ForEach-Object {
            [QbSupport]::Section($_, $headings + $separator + $indent, '') })) +
    (Get-Group 9 '' @(, @(10, 'C:\ProgramData'))) +
    (Get-Group 11 'Software' @(@(12, $key), @(13, $key))) +
    (Get-Group 14 '' @(, @(15, 'NUMBER_OF_PROCESSORS'))) +
    (Get-Group 16 '' @(, @(17, 'QBSUPPORT.dll'))) +
    [QbSupport]::Section(20, $headings + $separator + $indent, '')
Set-Content -LiteralPath $File -Value $text -NoNewline -Encoding UTF8
"The report is in $File"
