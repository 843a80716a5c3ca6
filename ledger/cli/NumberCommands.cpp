// rule set, next, last
#include "hosts/common/Text.h"
#include "ledger/cli/Commands.h"
#include "ledger/cli/ExitCode.h"
#include "ledger/cli/Fields.h"
#include "ledger/cli/RuleStoring.h"
#include "ledger/core/Json.h"
#include "ledger/core/NextNumber.h"
#include "ledger/core/RuleCalendar.h"

namespace ledger {

namespace {

void Print(const Session& session, const SeriesState& state) {
    Json json = {{"band", ToJson(state.band)}, {"series", ToJson(state.series)}};
    if (!state.isFull) json["next"] = state.next;
    session.output.Line(hosts::Shown(state.series) + L'\t' + state.band + L'\t' +
                            (state.isFull ? L"full" : std::to_wstring(state.next)),
                        json);
}

void PrintLast(const Session& session, const SeriesState& state) {
    Json json = {{"band", ToJson(state.band)}, {"series", ToJson(state.series)}};
    if (state.last) json["last"] = state.last->number;
    if (state.last) json["code"] = ToJson(state.last->code);
    const std::wstring last =
        state.last ? std::to_wstring(state.last->number) + L'\t' + hosts::Shown(state.last->code) : L"none";
    session.output.Line(hosts::Shown(state.series) + L'\t' + state.band + L'\t' + last, json);
}

} // namespace

std::optional<RuleSettings> SettingsWith(Session& session, const std::wstring& rule, const SettingOptions& options) {
    if (!options.Any()) return std::nullopt;
    Rules rules(session.database);
    const auto stored = InSnapshot(session.database, session.patience, [&] { return rules.Find(rule); });
    RuleSettings settings = stored ? stored->settings : RuleSettings{};
    settings.step = options.step.value_or(settings.step);
    settings.reuse = options.reuse.value_or(settings.reuse);
    settings.series = options.series.value_or(settings.series);
    if (options.week) settings.week = options.week;
    return settings;
}

int SetRule(Session& session, const SetOptions& options) {
    const StoredRule rule = ResolveRule(session, options.rule);
    RuleChange change;
    change.name = rule.name;
    change.definition = rule.definition.text;
    change.revision = rule.revision;
    change.settings = SettingsWith(session, rule.name, options.settings).value_or(rule.settings);
    CodeMaker maker(change.definition, *change.settings);
    const ChangeReport report = ChangeRule(session.database, session.patience, change, maker);
    const RuleSettings& now = report.rule.settings;
    Json json = {{"rule", ToJson(rule.name)},
                 {"step", now.step},
                 {"reuse", now.reuse},
                 {"series", ToJson(now.series)},
                 {"changed", report.changed}};
    if (now.week) json["weekBegins"] = ToJson(NameOfWeekDay(*now.week));
    session.output.Line(L"rule \"" + rule.name + L"\": " + Described(now), json);
    return ExitDone;
}

int NextCommand(Session& session, const NextOptions& options) {
    const StoredRule rule = ResolveRule(session, options.rule);
    CodeMaker maker(rule.definition.text, rule.settings);
    UseDateFormat(maker, options.dateFormat);
    const FieldValues values = ParseFields(maker, options.fields);
    const Workplace workplace{session.database, rule, maker, session.patience};
    if (options.set && !SetNextNumber(workplace, values, options.band, *options.set))
        session.output.Note(L"it is the next number already");
    for (const SeriesState& state : LookAtSeries(workplace, values))
        Print(session, state);
    return ExitDone;
}

int LastCommand(Session& session, const NextOptions& options) {
    const StoredRule rule = ResolveRule(session, options.rule);
    CodeMaker maker(rule.definition.text, rule.settings);
    UseDateFormat(maker, options.dateFormat);
    const FieldValues values = ParseFields(maker, options.fields);
    for (const SeriesState& state : LookAtSeries({session.database, rule, maker, session.patience}, values))
        PrintLast(session, state);
    return ExitDone;
}

} // namespace ledger
