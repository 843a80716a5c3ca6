// Runs Host.cs on a database that keeps its rows in memory and refuses what it is told to, and prints what comes of it.
using System;
using System.Collections;
using System.Collections.Generic;
using System.Data;
using System.Data.Common;
using System.Linq;
using Rule = Kestrel.Interop.Rule; // there is a System.Data.Rule, too

sealed class Refusal : DbException
{
    public Refusal(string state, int number) : base("said " + (state ?? number.ToString()))
    {
        SqlState = state;
        Number = number;
    }

    public string SqlState { get; }
    public int Number { get; }
}

// The rows, those of the transaction under way apart; and which statement is refused next, how often and how.
sealed class Rows
{
    public readonly List<object[]> Codes = new List<object[]>(), Numbers = new List<object[]>();
    readonly List<object[]> newCodes = new List<object[]>(), newNumbers = new List<object[]>();
    public string Words;
    public int Times, Transactions;
    public Refusal Answer;

    public object Execute(string sql, object[] values)
    {
        if (Times > 0 && sql.StartsWith(Words))
        {
            Times--;
            throw Answer;
        }
        if (sql.StartsWith("INSERT INTO codes")) newCodes.Add(values);
        else if (sql.StartsWith("INSERT INTO numbers")) newNumbers.Add(values);
        else if (sql.StartsWith("SELECT code FROM codes")) return Codes.Where(row => Equals(row[1], values[0])).Select(row => row[0]).FirstOrDefault();
        else return Numbers.Where(row => Equals(row[0], values[0])).OrderBy(row => (long)row[1]).Select(row => row[2]).LastOrDefault();
        return null;
    }

    public void Begin()
    {
        Transactions++;
        newCodes.Clear();
        newNumbers.Clear();
    }

    public void Commit()
    {
        Codes.AddRange(newCodes);
        Numbers.AddRange(newNumbers);
    }
}

sealed class Connection : DbConnection
{
    public readonly Rows Rows = new Rows();
    public override string ConnectionString { get; set; }
    public override string Database => "";
    public override string DataSource => "";
    public override string ServerVersion => "";
    public override ConnectionState State => ConnectionState.Open;
    public override void Open() { }
    public override void Close() { }
    public override void ChangeDatabase(string name) { }
    protected override DbCommand CreateDbCommand() => new Command { Connection = this };

    protected override DbTransaction BeginDbTransaction(IsolationLevel level)
    {
        Rows.Begin();
        return new Transaction(this, level);
    }
}

sealed class Transaction : DbTransaction
{
    readonly Connection connection;

    public Transaction(Connection connection, IsolationLevel level)
    {
        this.connection = connection;
        IsolationLevel = level;
    }

    public override IsolationLevel IsolationLevel { get; }
    protected override DbConnection DbConnection => connection;
    public override void Commit() => connection.Rows.Commit();
    public override void Rollback() { }
}

sealed class Command : DbCommand
{
    readonly Parameters parameters = new Parameters();
    public override string CommandText { get; set; }
    public override int CommandTimeout { get; set; }
    public override CommandType CommandType { get; set; }
    public override bool DesignTimeVisible { get; set; }
    public override UpdateRowSource UpdatedRowSource { get; set; }
    protected override DbConnection DbConnection { get; set; }
    protected override DbTransaction DbTransaction { get; set; }
    protected override DbParameterCollection DbParameterCollection => parameters;
    public override void Cancel() { }
    public override void Prepare() { }
    protected override DbParameter CreateDbParameter() => new Parameter();
    protected override DbDataReader ExecuteDbDataReader(CommandBehavior behavior) => throw new NotSupportedException();
    public override int ExecuteNonQuery() => throw new NotSupportedException();

    public override object ExecuteScalar()
    {
        if (DbTransaction == null) throw new InvalidOperationException("outside of the transaction");
        return ((Connection)DbConnection).Rows.Execute(CommandText, parameters.Given.Select(parameter => parameter.Value).ToArray());
    }
}

sealed class Parameter : DbParameter
{
    public override DbType DbType { get; set; }
    public override ParameterDirection Direction { get; set; }
    public override bool IsNullable { get; set; }
    public override string ParameterName { get; set; }
    public override int Size { get; set; }
    public override string SourceColumn { get; set; }
    public override bool SourceColumnNullMapping { get; set; }
    public override object Value { get; set; }
    public override void ResetDbType() { }
}

// Takes parameters, and no more.
sealed class Parameters : DbParameterCollection
{
    public readonly List<Parameter> Given = new List<Parameter>();
    public override int Count => Given.Count;
    public override object SyncRoot => Given;

    public override int Add(object value)
    {
        Given.Add((Parameter)value);
        return Given.Count - 1;
    }

    public override IEnumerator GetEnumerator() => Given.GetEnumerator();
    protected override DbParameter GetParameter(int index) => Given[index];
    protected override DbParameter GetParameter(string name) => throw new NotSupportedException();
    protected override void SetParameter(int index, DbParameter value) => throw new NotSupportedException();
    protected override void SetParameter(string name, DbParameter value) => throw new NotSupportedException();
    public override void AddRange(Array values) => throw new NotSupportedException();
    public override void Clear() => throw new NotSupportedException();
    public override bool Contains(object value) => throw new NotSupportedException();
    public override bool Contains(string value) => throw new NotSupportedException();
    public override void CopyTo(Array array, int index) => throw new NotSupportedException();
    public override int IndexOf(object value) => throw new NotSupportedException();
    public override int IndexOf(string name) => throw new NotSupportedException();
    public override void Insert(int index, object value) => throw new NotSupportedException();
    public override void Remove(object value) => throw new NotSupportedException();
    public override void RemoveAt(int index) => throw new NotSupportedException();
    public override void RemoveAt(string name) => throw new NotSupportedException();
}

static class HostTest
{
    const int Fixed = 0, UserField = 2, Number = 3;
    static readonly Connection database = new Connection();
    static GaplessIssuer issuer;

    [STAThread]
    static void Main()
    {
        using (issuer = new GaplessIssuer(database, Definition()))
        {
            Tell("first", "order 1");
            Tell("second", "order 2");
            Tell("the first again", "order 1");
            Tell("a conflict", "order 3", "INSERT INTO codes", new Refusal("40001", 0));
            Tell("a key of SQL Server", "order 4", "INSERT INTO numbers", new Refusal(null, 2627));
            Tell("a deadlock while the rule asks", "order 5", "SELECT code FROM numbers", new Refusal(null, 1205));
            Tell("a missing value", "order 6", "INSERT INTO codes", new Refusal("23000", 515));
            Tell("a missing table while the rule asks", "order 7", "SELECT code FROM numbers", new Refusal("42P01", 0));
            Tell("what comes then", "order 8");
        }
        Console.WriteLine($"stored: {database.Rows.Codes.Count} codes, {database.Rows.Numbers.Count} numbers");
        try
        {
            new GaplessIssuer(database, "").Dispose();
        }
        catch (ArgumentException error)
        {
            Console.WriteLine(error.ParamName);
        }
    }

    static string Definition()
    {
        var rule = new Rule();
        var year = rule.GetObject("UsrFields").CallForObject("Add", "Year");
        rule.Call("Add", "Prefix", Fixed, 0, "INV-");
        rule.Call("Add", "Year", UserField, 0, "", year.Target, 4);
        rule.Call("Add", "Dash", Fixed, 0, "-");
        rule.CallForObject("Add", "Number", Number, 0, "1", Type.Missing, 6, "000000").GetObject("TrackBands").Call("Add", "Year");
        var definition = (string)rule.Get("Definition");
        rule.Close();
        return definition;
    }

    static void Tell(string what, string ticket, string words = "", Refusal answer = null)
    {
        database.Rows.Words = words;
        database.Rows.Answer = answer;
        database.Rows.Times = answer == null ? 0 : 1;
        database.Rows.Transactions = 0;
        try
        {
            Console.WriteLine($"{what}: {issuer.Issue(ticket, "2026")}, {database.Rows.Transactions}");
        }
        catch (Refusal refused)
        {
            Console.WriteLine($"{what}: {refused.Message}, {database.Rows.Transactions}");
        }
    }
}
