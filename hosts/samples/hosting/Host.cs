// The pattern of host.cpp in C#, with the type library referenced (Add Reference > COM > Kestrel) and any ADO.NET provider.
// Not run by the tests: it takes .NET on Windows. C# 9 or newer.
using System;
using System.Data;
using System.Data.Common;
using Kestrel;

sealed class GaplessIssuer
{
    readonly DbConnection database;
    readonly CodeClass rule = new CodeClass();
    DbTransaction transaction;
    string series;

    public GaplessIssuer(DbConnection database, string definition)
    {
        this.database = database;
        rule.Load(definition);
        rule.GetLastCode += OnGetLastCode;
    }

    // The code that the ticket has, or a new one. Tries again with the next number when somebody else was first.
    public string Issue(string ticket, string year)
    {
        rule.UsrFields["Year"].Value = year;
        for (var attempt = 0; attempt < 200; attempt++)
        {
            using (transaction = database.BeginTransaction(IsolationLevel.ReadCommitted))
            {
                try
                {
                    if (Run("SELECT code FROM codes WHERE ticket = @p0", ticket) is string known) return known;
                    var code = rule.GetCode(GetStyles.gsNewCode);
                    Run("INSERT INTO codes (code, ticket) VALUES (@p0, @p1)", code, ticket);
                    Run("INSERT INTO numbers (series, number, code) VALUES (@p0, @p1, @p2)",
                        series, long.Parse(code.Substring(code.Length - 6)), code);
                    transaction.Commit();
                    return code;
                }
                catch (DbException error) when (MayRetry(error))
                {
                    transaction.Rollback();
                }
            }
            System.Threading.Thread.Sleep(Random.Shared.Next(20));
        }
        throw new TimeoutException("the database stayed busy");
    }

    // Called by the component within GetCode; both arguments are by reference.
    void OnGetLastCode(ref string filter, ref string value)
    {
        series = filter;
        value = Run("SELECT code FROM numbers WHERE series = @p0 AND number = " +
                    "(SELECT MAX(number) FROM numbers WHERE series = @p0)", series) as string ?? "";
    }

    object Run(string sql, params object[] values)
    {
        using var command = database.CreateCommand();
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

    static bool MayRetry(DbException error) =>
        error.SqlState is "23505" or "40001" or "40P01" || error.IsTransient;
}
