// Files with codes and the values that they stand for, as a tree: one layer, or several that lie below each other.
//
// A layer is a column with the values, named like the layer's field, and a column with their codes, which has " code"
// behind the name; without one the values are the codes. A file of two columns with other names is one layer: codes in
// the first column, values in the second. In a file of several layers a line says what lies below what; where the cells
// of deeper layers are empty, nothing does.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "hosts/common/Csv.h"

namespace ledger {

struct Relation {
    std::wstring code;
    std::wstring value;
    std::vector<Relation> below;
};

struct CodeTable {
    std::vector<Relation> relations;
    std::vector<std::size_t> lengths; // of the codes, layer by layer; all of a layer have one
};

// The table of a file, found by the name that a pattern gives it.
using CodeFiles = std::function<hosts::CsvTable(const std::wstring& file)>;

// The layers are those of the fields, in order. Fails with HostError, naming the file and the line, on columns that are
// missing, codes or values that are empty, stand for something else already, or hold what a definition does not bring
// back, and codes of several lengths.
[[nodiscard]] CodeTable ReadCodeTable(const hosts::CsvTable& table, const std::wstring& file,
                                      const std::vector<std::wstring>& fields);

// The lines of a file that ReadCodeTable makes the same table of.
[[nodiscard]] std::wstring WriteCodeTable(const std::vector<Relation>& relations,
                                          const std::vector<std::wstring>& fields);

} // namespace ledger
