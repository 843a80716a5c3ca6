#include "ledger/core/Json.h"

#include "hosts/common/Utf8.h"

namespace ledger {

Json ToJson(std::wstring_view text) { return hosts::ToUtf8(text); }

Json ToJson(const std::vector<std::wstring>& texts) {
    Json array = Json::array();
    for (const std::wstring& text : texts)
        array.push_back(ledger::ToJson(text));
    return array;
}

Json ToJson(const FieldValues& values) {
    Json object = Json::object();
    for (const auto& [name, value] : values)
        object[hosts::ToUtf8(name)] = hosts::ToUtf8(value);
    return object;
}

std::wstring JsonText(const Json& json) { return hosts::FromOwnUtf8(json.dump()); }

FieldValues FieldsOf(const std::wstring& text) {
    FieldValues values;
    const Json object = Json::parse(hosts::ToUtf8(text), nullptr, false);
    if (!object.is_object()) return values;
    for (const auto& [name, value] : object.items())
        if (value.is_string())
            values.emplace_back(hosts::FromOwnUtf8(name), hosts::FromOwnUtf8(value.get<std::string>()));
    return values;
}

bool IsJsonObject(const std::wstring& text) { return text.starts_with(L"{") && Json::accept(hosts::ToUtf8(text)); }

} // namespace ledger
