#include "ledger/core/RuleSettings.h"

#include "hosts/common/Utf8.h"
#include "ledger/core/Json.h"
#include "ledger/core/RuleCalendar.h"

namespace ledger {

namespace {

std::wstring WithoutBlanks(const std::wstring& json) {
    std::wstring text;
    for (const wchar_t character : json) {
        if (character == L' ')
            text += L"\\u0020";
        else
            text += character;
    }
    return text;
}

template <class Value>
void Read(const Json& json, const char* key, Value& value) {
    const auto found = json.find(key);
    if (found == json.end()) return;
    if constexpr (std::is_same_v<Value, bool>) {
        if (found->is_boolean()) value = found->template get<bool>();
    } else if (found->is_number_integer()) {
        value = found->template get<Value>();
    }
}

} // namespace

std::wstring TextOf(const RuleSettings& settings) {
    Json json = Json::object();
    if (settings.step != 1) json["step"] = settings.step;
    if (settings.reuse) json["reuse"] = true;
    if (!settings.series.empty()) json["series"] = ToJson(settings.series);
    if (settings.week) json["week"] = *settings.week;
    if (settings.retired) json["retired"] = true;
    return WithoutBlanks(JsonText(json));
}

std::wstring Described(const RuleSettings& settings) {
    return L"step " + std::to_wstring(settings.step) + L", numbers of void codes " +
           (settings.reuse ? L"given again" : L"kept") +
           (settings.series.empty() ? std::wstring() : L", counted separately by " + settings.series) +
           (settings.week ? L", weeks begin on " + NameOfWeekDay(*settings.week) : std::wstring());
}

RuleSettings RuleSettingsOf(const std::wstring& text) {
    RuleSettings settings;
    const Json json = Json::parse(hosts::ToUtf8(text), nullptr, false);
    if (!json.is_object()) return settings;
    Read(json, "step", settings.step);
    Read(json, "reuse", settings.reuse);
    Read(json, "retired", settings.retired);
    if (const auto series = json.find("series"); series != json.end() && series->is_string())
        settings.series = hosts::FromOwnUtf8(series->get<std::string>());
    if (const auto week = json.find("week"); week != json.end() && week->is_number_integer())
        settings.week = week->get<int>();
    return settings;
}

void RefuseRetired(const RuleSettings& settings, const std::wstring& rule) {
    if (!settings.retired) return;
    throw hosts::HostError(L"rule \"" + rule + L"\" was retired: it keeps its codes and issues no more");
}

} // namespace ledger
