// The pattern of host.cpp in C#, for any ADO.NET provider. C# 7 or newer, with Kestrel.cs of the sample clients.
using System;
using System.Data;
using System.Data.Common;
using System.Runtime.ExceptionServices;
using System.Threading;
using Rule = Kestrel.Interop.Rule; // there is a System.Data.Rule, too

public sealed class GaplessIssuer : IDisposable
{
    const int NewCode = 1, Attempts = 200;
    readonly DbConnection database;
    readonly Rule rule = new Rule();
    readonly Random random = new Random();
    DbTransaction transaction;
    string series;
    Exception failure; // what went wrong while the rule asked: a handler's own error never reaches the caller of GetCode

    public GaplessIssuer(DbConnection database, string definition)
    {
        this.database = database;
        rule.Call("Load", definition);
        if ((int)rule.Get("Count") == 0) throw new ArgumentException("this is no definition of a rule", nameof(definition));
        rule.Events.LastCode = LastCode;
    }

    public void Dispose()
    {
        rule.Close();
    }

    // The code that the ticket has, or a new one. Tries again with the next number when somebody else was first.
    public string Issue(string ticket, string year)
    {
        rule.GetObject("UsrFields").GetObject("Item", "Year").Set("Value", year);
        for (var attempt = 0; attempt < Attempts; attempt++)
        {
            try
            {
                return TryToIssue(ticket);
            }
            catch (DbException error) when (MayBeRetried(error))
            {
                Thread.Sleep(random.Next(20)); // so that two programs do not meet again
            }
        }
        throw new TimeoutException("the database stayed busy");
    }

    // What ends it before Commit, undoes it.
    string TryToIssue(string ticket)
    {
        using (transaction = database.BeginTransaction(IsolationLevel.ReadCommitted))
        {
            if (Run("SELECT code FROM codes WHERE ticket = @p0", ticket) is string known) return known;
            failure = null;
            var code = (string)rule.Call("GetCode", NewCode);
            if (failure != null) ExceptionDispatchInfo.Capture(failure).Throw();
            Run("INSERT INTO codes (code, ticket) VALUES (@p0, @p1)", code, ticket);
            Run("INSERT INTO numbers (series, number, code) VALUES (@p0, @p1, @p2)",
                series, long.Parse(code.Substring(code.Length - 6)), code);
            transaction.Commit();
            return code;
        }
    }

    // Called by the component within GetCode.
    string LastCode(string filter)
    {
        series = filter;
        try
        {
            return Run("SELECT code FROM numbers WHERE series = @p0 AND number = " +
                       "(SELECT MAX(number) FROM numbers WHERE series = @p0)", series) as string ?? "";
        }
        catch (Exception error)
        {
            failure = error;
            return "";
        }
    }

    object Run(string sql, params object[] values)
    {
        using (var command = database.CreateCommand())
        {
            command.CommandText = sql;
            command.Transaction = transaction;
            for (var i = 0; i < values.Length; i++)
            {
                var parameter = command.CreateParameter();
                parameter.ParameterName = "@p" + i;
                parameter.Value = values[i];
                command.Parameters.Add(parameter);
            }
            return command.ExecuteScalar();
        }
    }

    // A duplicate key, a serialization failure or a deadlock, and nothing else. Each provider has a property of its own for it:
    // PostgreSQL's says them by SqlState, those of SQL Server and MariaDB by Number.
    static bool MayBeRetried(DbException error)
    {
        switch (Property(error, "SqlState") as string)
        {
            case "23505": case "40001": case "40P01":
                return true;
        }
        switch (Property(error, "Number") as int?)
        {
            case 2601: case 2627: case 1205: // SQL Server
            case 1062: case 1213: // MariaDB
                return true;
        }
        return false;
    }

    static object Property(DbException error, string name)
    {
        return error.GetType().GetProperty(name)?.GetValue(error);
    }
}
