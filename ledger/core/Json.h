// JSON as kledger prints and stores it: UTF-8, members in the order they were added.
#pragma once

#include <nlohmann/json.hpp>

#include <string>
#include <string_view>

#include "ledger/core/CodeMaker.h"

namespace ledger {

using Json = nlohmann::ordered_json;

// A JSON string.
[[nodiscard]] Json ToJson(std::wstring_view text);
// In their order.
[[nodiscard]] Json ToJson(const std::vector<std::wstring>& texts);
// A JSON object with a string per field.
[[nodiscard]] Json ToJson(const FieldValues& values);
// On one line.
[[nodiscard]] std::wstring JsonText(const Json& json);
// The fields of an object that JsonText wrote; none when the text is no object of strings.
[[nodiscard]] FieldValues FieldsOf(const std::wstring& text);
[[nodiscard]] bool IsJsonObject(const std::wstring& text);

} // namespace ledger
