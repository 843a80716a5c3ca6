// The program of this folder in C#: makes a rule, answers what it asks, issues codes by ticket, takes codes apart. Every
// language here prints the same lines. C# 6 or newer, with Kestrel.cs.
using System;
using System.Collections.Generic;
using System.Linq;
using System.Runtime.InteropServices;
using Kestrel.Interop;

static class Client
{
    const int Fixed = 0, UserField = 2, Number = 3, NewCode = 1;
    static readonly Rule rule = new Rule();
    static readonly Dictionary<string, string> issued = new Dictionary<string, string>(); // what a program keeps in its database
    static Late year;

    [STAThread]
    static void Main()
    {
        rule.Events.LastCode = LastCode;
        year = rule.GetObject("UsrFields").CallForObject("Add", "Year");
        AddBand("Prefix", Fixed, "INV-");
        AddBand("Year", UserField, "", 4, "", year);
        AddBand("Dash", Fixed, "-");
        AddBand("Number", Number, "1", 5, "00000").GetObject("TrackBands").Call("Add", "Year");

        IssueFor("order 1", "2026");
        IssueFor("order 2", "2026");
        IssueFor("order 3", "2027");
        IssueFor("order 2", "2026"); // the same request again gets the same code
        TakeApart("INV-2026-00002");
        TakeApart("ABC-2026-00002");

        var copy = new Rule();
        copy.Call("Load", rule.Get("Definition"));
        Console.WriteLine($"stored and loaded: {copy.Get("Count")} bands");
        copy.Close();
        rule.Close();
    }

    static Late AddBand(string name, int style, string first, object length = null, string format = "", Late field = null)
    {
        return rule.CallForObject("Add", name, style, 0, first, field?.Target ?? Type.Missing, length ?? Type.Missing, format);
    }

    static void IssueFor(string ticket, string ofYear)
    {
        if (!issued.ContainsKey(ticket))
        {
            year.Set("Value", ofYear);
            issued[ticket] = (string)rule.Call("GetCode", NewCode);
        }
        Console.WriteLine($"{ticket}: {issued[ticket]}");
    }

    static void TakeApart(string code)
    {
        try
        {
            rule.Call("ExpCode", code);
            Console.WriteLine($"{code}: year {year.Get("Value")}, number {rule.GetObject("Band", "Number").Get("Value")}");
        }
        catch (COMException refused)
        {
            Console.WriteLine($"{code}: refused with {refused.ErrorCode & 0xFFFF}, {refused.Message}");
        }
    }

    // The event: the last code issued that fits the filter, in which "?" is any character. The component adds one to its number.
    static string LastCode(string filter)
    {
        Console.WriteLine($"asked for the last code like {filter}");
        return issued.Values.Where(code => code.StartsWith(filter.Substring(0, 9), StringComparison.Ordinal))
            .OrderBy(code => code, StringComparer.Ordinal).LastOrDefault() ?? "";
    }
}
