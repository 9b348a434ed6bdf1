# Shows the whole report, or saves it to a file as UTF-8: report.ps1 [FILE]. Needs x64 PowerShell,
# 5.1 or 7.
param(
    [string] $File,
    [string] $Library = (Join-Path $PSScriptRoot '..\bin\QBSUPPORT.dll')
)
$ErrorActionPreference = 'Stop'

# With the full path, no file of that name in another directory can take its place.
$fullPath = (Resolve-Path -LiteralPath $Library).ProviderPath

Add-Type -TypeDefinition @"
using System;
using System.Runtime.InteropServices;

public static class QbSupport
{
    // It is ref and not out because the pointer does not change if the section fails.
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

# A section and the single lines that belong to it, as kind and argument.
function Get-Group([int] $Kind, [string] $Argument, [object[][]] $Lines) {
    $section = [QbSupport]::Section($Kind, $headings + $indent, $Argument)
    # Without the heading, the lines would seem to belong to the section above.
    if ($section -eq '') { return '' }
    # The library does not know which line is the last.
    $section + (-join ($Lines | ForEach-Object { [QbSupport]::Section($_[0], $indent, $_[1]) })) + "`r`n"
}

# Put your own program's directory, registry keys and modules here.
$key = 'Software\Microsoft'
$text = (-join (1..8 | ForEach-Object {
            [QbSupport]::Section($_, $headings + $separator + $indent, '') })) +
    (Get-Group 9 '' @(, @(10, 'C:\ProgramData'))) +
    (Get-Group 11 'Software' @(@(12, $key), @(13, $key))) +
    (Get-Group 14 '' @(, @(15, 'NUMBER_OF_PROCESSORS'))) +
    (Get-Group 16 '' @(, @(17, 'kernel32.dll'))) +
    [QbSupport]::Section(20, $headings + $separator + $indent, '')
if ($File) {
    # .NET resolves a relative path against another directory than PowerShell does. Set-Content is not
    # used because PowerShell 5.1 would write a byte-order mark.
    $path = $ExecutionContext.SessionState.Path.GetUnresolvedProviderPathFromPSPath($File)
    [IO.File]::WriteAllText($path, $text)
} else {
    $text
}
