#include "ledger/core/pattern/CodeTable.h"

#include <gtest/gtest.h>

#include "hosts/common/HostError.h"
#include "hosts/common/Utf8.h"

using ledger::CodeTable;
using ledger::Relation;

namespace {

using FieldNames = std::vector<std::wstring>;

std::wstring Written(const std::vector<Relation>& relations) {
    std::wstring text;
    for (const Relation& relation : relations)
        text += (text.empty() ? L"" : L" ") + relation.code + L"=" + relation.value +
                (relation.below.empty() ? L"" : L"(" + Written(relation.below) + L")");
    return text;
}

std::wstring TableOutcome(const wchar_t* text, const FieldNames& fields) {
    try {
        return Written(ledger::ReadCodeTable(hosts::ParseCsv(text), L"f.csv", fields).relations);
    } catch (const hosts::HostError& error) {
        return error.Message();
    }
}

struct TableCase {
    const wchar_t* text;
    FieldNames fields;
    const wchar_t* outcome; // the relations, or a part of the message
};

const TableCase AcceptedTables[] = {
    {L"c,v\n1,North\n2,South\n", {L"Region"}, L"1=North 2=South"},
    {L"Region,Region code\nNorth,1\nSouth,2\n", {L"Region"}, L"1=North 2=South"},
    {L"No,Region,Region code,Who\n7,North,1,x\n", {L"Region"}, L"1=North"},
    {L"Region\nN\nS\n", {L"Region"}, L"N=N S=S"},
    {L"Land code,Land,Town code,Town\nD,Germany,1,Ulm\nD,Germany,2,Bonn\nF,France,1,Nice\n",
     {L"Land", L"Town"},
     L"D=Germany(1=Ulm 2=Bonn) F=France(1=Nice)"},
    {L"Town code,Town,Land code,Land\n1,Ulm,D,Germany\n,,F,France\n", {L"Land", L"Town"}, L"D=Germany(1=Ulm) F=France"},
};

const TableCase RejectedTables[] = {
    {L"c,v\n", {L"A"}, L"f.csv: the file has no line below its columns' names"},
    {L"a,b,c\n1,2,3\n", {L"A"}, L"f.csv: a column \"A\" with the values is expected"},
    {L"a,b\n1,2\n", {L"A", L"B"}, L"there are: a, b"},
    {L"c,v\n1\n", {L"A"}, L"f.csv: line 2: 1 cell where the first line names 2"},
    {L"c,v\n,North\n", {L"A"}, L"line 2: the code of \"North\" is empty"},
    {L"c,v\n1,\n", {L"A"}, L"line 2: the value of code \"1\" is empty"},
    {L"c,v\n1,North\n22,South\n", {L"A"}, L"line 3: code \"22\" has 2 characters where those above have 1"},
    {L"c,v\n1,North\n1,South\n", {L"A"}, L"line 3: code \"1\" stands for \"North\" already, and for \"South\" here"},
    {L"c,v\n1,North\n2,North\n", {L"A"}, L"line 3: \"North\" has code \"1\" already, and \"2\" here"},
    {L"c,v\n1,North\n1,North\n", {L"A"}, L"line 3: the line says again what stands above"},
    {L"c,v\n1,\"Smith, Sons\"\n", {L"A"}, L"line 2: \"Smith, Sons\" holds a comma"},
    {L"c,v\n1,\"a\nb\"\n", {L"A"}, L"holds a comma, semicolon or line break"},
    {L"A,A code,B,B code\nx,1,,\ny,2,z,\n", {L"A", L"B"}, L"line 3: the code of \"z\" is empty"},
    {L"A,A code,B,B code,C,C code\nx,1,,,z,1\n", {L"A", L"B", L"C"}, L"line 2: a cell of an upper layer is empty"},
};

} // namespace

TEST(CodeTableTest, AcceptedFiles) {
    for (const TableCase& row : AcceptedTables) {
        EXPECT_EQ(TableOutcome(row.text, row.fields), row.outcome) << hosts::ToUtf8(row.text);
    }
}

TEST(CodeTableTest, RejectedFiles) {
    for (const TableCase& row : RejectedTables)
        EXPECT_NE(TableOutcome(row.text, row.fields).find(row.outcome), std::wstring::npos)
            << hosts::ToUtf8(row.text) << " -> " << hosts::ToUtf8(TableOutcome(row.text, row.fields));
}

TEST(CodeTableTest, WrittenAndReadAgainItIsTheSame) {
    for (const TableCase& row : AcceptedTables) {
        const CodeTable table = ledger::ReadCodeTable(hosts::ParseCsv(row.text), L"f.csv", row.fields);
        EXPECT_EQ(TableOutcome(ledger::WriteCodeTable(table.relations, row.fields).c_str(), row.fields), row.outcome);
    }
    EXPECT_EQ(ledger::WriteCodeTable({{L"1", L"a \"b\"", {}}}, {L"A"}), L"A code,A\n1,\"a \"\"b\"\"\"\n");
}
