#include "ledger/core/pattern/CodeTable.h"

#include <algorithm>
#include <memory>
#include <unordered_map>

#include "hosts/common/HostError.h"
#include "hosts/common/Text.h"

namespace ledger {

namespace {

const wchar_t* const CodeColumn = L" code";

struct Columns {
    std::size_t code = 0;
    std::size_t value = 0;
};

std::wstring NamesOf(const std::vector<std::wstring>& columns) {
    std::wstring names;
    for (const std::wstring& column : columns)
        names += (names.empty() ? L"" : L", ") + column;
    return names;
}

class TableReader {
  public:
    TableReader(const hosts::CsvTable& table, const std::wstring& file, const std::vector<std::wstring>& fields)
        : mvarTable(table), mvarFile(file) {
        for (const std::wstring& field : fields)
            mvarColumns.push_back(ColumnsOf(field, fields.size()));
        mvarRead.lengths.resize(fields.size());
    }

    CodeTable Read() {
        for (const hosts::CsvRecord& record : mvarTable.records)
            ReadRecord(record);
        if (mvarTable.records.empty()) Fail(L"the file has no line below its columns' names");
        return std::move(mvarRead);
    }

  private:
    // What a layer holds already below one relation, or above all: the places of codes and values among the siblings.
    struct Siblings {
        std::unordered_map<std::wstring, std::size_t> codes;
        std::unordered_map<std::wstring, std::size_t> values;
        std::vector<std::unique_ptr<Siblings>> below; // beside the siblings
    };

    [[noreturn]] void Fail(const std::wstring& cause) const { throw hosts::HostError(mvarFile + L": " + cause); }
    [[noreturn]] void Fail(std::size_t line, const std::wstring& cause) const {
        Fail(L"line " + std::to_wstring(line) + L": " + cause);
    }

    [[nodiscard]] Columns ColumnsOf(const std::wstring& field, std::size_t layers) const {
        const std::vector<std::wstring>& columns = mvarTable.columns;
        const auto value = std::ranges::find(columns, field);
        const auto code = std::ranges::find(columns, field + CodeColumn);
        const auto place = [&columns](auto found) { return static_cast<std::size_t>(found - columns.begin()); };
        if (value != columns.end()) return {place(code == columns.end() ? value : code), place(value)};
        if (layers == 1 && columns.size() == 2) return {0, 1};
        throw hosts::HostError(mvarFile + L": a column \"" + field + L"\" with the values is expected, and \"" + field +
                               CodeColumn + L"\" with their codes" +
                               (layers == 1 ? L", or two columns, codes and values" : L"") + L"; there are: " +
                               NamesOf(columns));
    }

    void ReadRecord(const hosts::CsvRecord& record) {
        if (record.fields.size() != mvarTable.columns.size())
            Fail(record.line, hosts::Counted(record.fields.size(), L"cell") + L" where the first line names " +
                                  std::to_wstring(mvarTable.columns.size()));
        std::vector<Relation>* relations = &mvarRead.relations;
        Siblings* siblings = &mvarTop;
        bool isNew = false;
        for (std::size_t layer = 0; layer < mvarColumns.size(); ++layer) {
            const std::wstring& code = record.fields[mvarColumns[layer].code];
            const std::wstring& value = record.fields[mvarColumns[layer].value];
            if (layer > 0 && code.empty() && value.empty()) {
                RefuseFilled(record, layer);
                break;
            }
            CheckCell(record.line, layer, code, value);
            const std::size_t place = PlaceOf(record.line, *relations, *siblings, code, value, isNew);
            relations = &(*relations)[place].below;
            siblings = siblings->below[place].get();
        }
        if (!isNew) Fail(record.line, L"the line says again what stands above");
    }

    void RefuseFilled(const hosts::CsvRecord& record, std::size_t layer) const {
        for (; layer < mvarColumns.size(); ++layer)
            if (!record.fields[mvarColumns[layer].code].empty() || !record.fields[mvarColumns[layer].value].empty())
                Fail(record.line, L"a cell of an upper layer is empty, and one of a lower layer is not");
    }

    void CheckCell(std::size_t line, std::size_t layer, const std::wstring& code, const std::wstring& value) {
        if (code.empty()) Fail(line, L"the code of \"" + hosts::Shown(value) + L"\" is empty");
        if (value.empty()) Fail(line, L"the value of code \"" + hosts::Shown(code) + L"\" is empty");
        for (const std::wstring& text : {code, value})
            if (text.find_first_of(L",;") != std::wstring::npos || hosts::HasControl(text) || !hosts::IsWhole(text))
                Fail(line, L"\"" + hosts::Shown(text) +
                               L"\" holds a comma, semicolon or line break, which a definition does not bring back");
        std::size_t& length = mvarRead.lengths[layer];
        if (length == 0) length = code.size();
        if (code.size() != length)
            Fail(line, L"code \"" + code + L"\" has " + hosts::Counted(code.size(), L"character") +
                           L" where those above have " + std::to_wstring(length));
    }

    std::size_t PlaceOf(std::size_t line, std::vector<Relation>& relations, Siblings& siblings,
                        const std::wstring& code, const std::wstring& value, bool& isNew) const {
        const auto known = siblings.codes.find(code);
        const auto meant = siblings.values.find(value);
        isNew = known == siblings.codes.end() && meant == siblings.values.end();
        if (isNew) {
            siblings.codes.emplace(code, relations.size());
            siblings.values.emplace(value, relations.size());
            siblings.below.push_back(std::make_unique<Siblings>());
            relations.push_back({code, value, {}});
            return relations.size() - 1;
        }
        if (known == siblings.codes.end())
            Fail(line, L"\"" + value + L"\" has code \"" + relations[meant->second].code + L"\" already, and \"" +
                           code + L"\" here");
        if (relations[known->second].value != value)
            Fail(line, L"code \"" + code + L"\" stands for \"" + relations[known->second].value +
                           L"\" already, and for \"" + value + L"\" here");
        return known->second;
    }

    const hosts::CsvTable& mvarTable;
    const std::wstring& mvarFile;
    std::vector<Columns> mvarColumns; // layer by layer
    CodeTable mvarRead;
    Siblings mvarTop;
};

// ---------------------------------------------------------------------------------------------------------- writer

std::wstring Cell(const std::wstring& text) {
    if (text.find_first_of(L"\",\r\n") == std::wstring::npos) return text;
    std::wstring quoted = L"\"";
    for (const wchar_t character : text)
        quoted.append(character == L'"' ? 2 : 1, character);
    return quoted + L'"';
}

class Writer {
  public:
    explicit Writer(std::size_t layers) : mvarLayers(layers) {}

    void Write(const std::vector<Relation>& relations, const std::wstring& before, std::size_t layer) {
        for (const Relation& relation : relations) {
            const std::wstring line =
                before + (layer > 0 ? L"," : L"") + Cell(relation.code) + L"," + Cell(relation.value);
            if (relation.below.empty())
                mvarText += line + std::wstring(2 * (mvarLayers - layer - 1), L',') + L"\n";
            else
                Write(relation.below, line, layer + 1);
        }
    }

    std::wstring mvarText;

  private:
    std::size_t mvarLayers;
};

} // namespace

CodeTable ReadCodeTable(const hosts::CsvTable& table, const std::wstring& file,
                        const std::vector<std::wstring>& fields) {
    return TableReader(table, file, fields).Read();
}

std::wstring WriteCodeTable(const std::vector<Relation>& relations, const std::vector<std::wstring>& fields) {
    std::wstring header;
    for (const std::wstring& field : fields)
        header += (header.empty() ? L"" : L",") + Cell(field + CodeColumn) + L"," + Cell(field);
    Writer writer(fields.size());
    writer.Write(relations, std::wstring(), 0);
    return header + L"\n" + writer.mvarText;
}

} // namespace ledger
