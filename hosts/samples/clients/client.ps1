# The program of this folder in PowerShell: makes a rule, answers what it asks, issues codes by ticket, takes codes apart. Every
# language here prints the same lines.
#
# Not run by the tests: Windows PowerShell 5.1 is a part of Windows. PowerShell cannot answer an event by its own means
# (Register-ObjectEvent hears of it later), so Kestrel.cs beside this file connects it.
#
#   powershell -ExecutionPolicy Bypass -File client.ps1
$ErrorActionPreference = 'Stop'
Add-Type -Path (Join-Path $PSScriptRoot 'Kestrel.cs')

$rule = New-Object Kestrel.Interop.Rule
$issued = [ordered]@{}  # what a program keeps in its database: the code of each ticket
$missing = [Type]::Missing

# The event: the last code issued that fits the filter, in which "?" is any character. The component adds one to its number.
$rule.Events.LastCode = {
    param($filter)
    [Console]::WriteLine("asked for the last code like $filter")
    $fitting = @($issued.Values | Where-Object { $_.Substring(0, 9) -ceq $filter.Substring(0, 9) } | Sort-Object)
    if ($fitting.Count -eq 0) { return '' }
    return $fitting[-1]
}

function Add-Band($name, $style, $first, $length = $missing, $format = '', $field = $missing) {
    $rule.CallForObject('Add', @($name, $style, 0, $first, $field, $length, $format))
}

function Write-CodeFor($ticket, $ofYear) {
    if (-not $issued.Contains($ticket)) {
        $year.Set('Value', $ofYear)
        $issued[$ticket] = $rule.Call('GetCode', @(1))
    }
    [Console]::WriteLine("${ticket}: $($issued[$ticket])")
}

function Write-Parts($code) {
    try {
        $null = $rule.Call('ExpCode', @($code))
        [Console]::WriteLine("${code}: year $($year.Get('Value')), number $($rule.GetObject('Band', @('Number')).Get('Value'))")
    } catch {
        $refused = $_.Exception.GetBaseException()
        [Console]::WriteLine("${code}: refused with $($refused.HResult -band 0xFFFF), $($refused.Message)")
    }
}

$year = $rule.GetObject('UsrFields').CallForObject('Add', @('Year'))
$null = Add-Band 'Prefix' 0 'INV-'
$null = Add-Band 'Year' 2 '' 4 '' $year.Target
$null = Add-Band 'Dash' 0 '-'
$null = (Add-Band 'Number' 3 '1' 5 '00000').GetObject('TrackBands').Call('Add', @('Year'))

Write-CodeFor 'order 1' '2026'
Write-CodeFor 'order 2' '2026'
Write-CodeFor 'order 3' '2027'
Write-CodeFor 'order 2' '2026'  # the same request again gets the same code
Write-Parts 'INV-2026-00002'
Write-Parts 'ABC-2026-00002'

$copy = New-Object Kestrel.Interop.Rule
$null = $copy.Call('Load', @($rule.Get('Definition')))
[Console]::WriteLine("stored and loaded: $($copy.Get('Count')) bands")
$copy.Close()
$rule.Close()
