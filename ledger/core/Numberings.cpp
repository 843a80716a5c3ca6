#include "ledger/core/Numberings.h"

#include <algorithm>

#include "hosts/common/Utf8.h"
#include "ledger/core/Journal.h"
#include "ledger/core/Json.h"
#include "ledger/core/NumberingCheck.h"
#include "ledger/core/Stamp.h"

namespace ledger {

namespace {

std::wstring Wide(const Json& json) { return hosts::FromOwnUtf8(json.get<std::string>()); }

Json PartJson(const NumberingPart& part) {
    return {{"rule", part.rule},           {"date", ToJson(part.date)}, {"from", ToJson(part.from)},
            {"until", ToJson(part.until)}, {"when", ToJson(part.when)}, {"then", ToJson(NameOf(part.then))}};
}

NumberingPart PartOf(const Json& json) {
    NumberingPart part;
    part.rule = json.at("rule").get<std::int64_t>();
    part.date = Wide(json.at("date"));
    part.from = Wide(json.at("from"));
    part.until = Wide(json.at("until"));
    part.when = FieldsOf(JsonText(json.at("when")));
    part.then = ThenOf(Wide(json.at("then"))).value_or(Then::Stop);
    return part;
}

// A text that is none leaves a numbering without parts, as if it had been removed; the audit tells.
void Read(const std::wstring& text, Numbering& numbering) {
    try {
        const Json json = Json::parse(hosts::ToUtf8(text));
        for (const Json& field : json.at("fields"))
            numbering.fields.push_back(Wide(field));
        for (const Json& part : json.at("parts"))
            numbering.parts.push_back(PartOf(part));
    } catch (const Json::exception&) {
        numbering.parts.clear();
    }
}

Numbering ReadNumbering(const Statement& row) {
    Numbering numbering;
    numbering.id = row.Number(1);
    numbering.name = row.Text(2);
    numbering.revision = row.Number(3);
    Read(row.Text(4), numbering);
    return numbering;
}

const wchar_t* const NumberingSelect = L"SELECT id, name, revision, text FROM kestrel_numberings";

void Add(Database& database, Numbering& numbering) {
    const auto lowest = database.Prepare(L"SELECT MIN(id) FROM kestrel_numberings").First([](const Statement& row) {
        return row.Number(1);
    });
    numbering.id = std::min<std::int64_t>(lowest.value_or(0), 0) - 1;
    numbering.revision = 1;
    database.Prepare(L"INSERT INTO kestrel_numberings (id, name, revision, text) VALUES (?, ?, 1, ?)")
        .Set(numbering.id)
        .Set(numbering.name)
        .Set(TextOf(numbering))
        .Execute();
}

void Replace(Database& database, Numbering& numbering) {
    Statement& update =
        database.Prepare(L"UPDATE kestrel_numberings SET revision = ?, text = ? WHERE id = ? AND revision = ?");
    update.Set(numbering.revision + 1).Set(TextOf(numbering)).Set(numbering.id).Set(numbering.revision).Execute();
    if (update.Changed() != 1)
        throw hosts::HostError(L"numbering \"" + numbering.name + L"\" was changed meanwhile; start again");
    ++numbering.revision;
}

} // namespace

std::wstring NameOf(Then then) { return then == Then::On ? L"on" : then == Then::Anew ? L"anew" : L"stop"; }

std::optional<Then> ThenOf(const std::wstring& name) {
    for (const Then then : {Then::Stop, Then::Anew, Then::On})
        if (NameOf(then) == name) return then;
    return std::nullopt;
}

bool Numbering::Names(std::int64_t rule) const {
    return std::ranges::find(parts, rule, &NumberingPart::rule) != parts.end();
}

std::vector<Numbering> Numberings::All() {
    return mvarDatabase.Prepare(std::wstring(NumberingSelect) + L" ORDER BY name").Rows(ReadNumbering);
}

std::optional<Numbering> Numberings::Find(const std::wstring& name) {
    auto found =
        mvarDatabase.Prepare(std::wstring(NumberingSelect) + L" WHERE name = ?").Set(name).First(ReadNumbering);
    return found && !found->parts.empty() ? found : std::nullopt;
}

std::wstring TextOf(const Numbering& numbering) {
    Json fields = Json::array();
    for (const std::wstring& field : numbering.fields)
        fields.push_back(ToJson(field));
    Json parts = Json::array();
    for (const NumberingPart& part : numbering.parts)
        parts.push_back(PartJson(part));
    return JsonText({{"fields", fields}, {"parts", parts}});
}

bool IsFollowed(Database& database, std::int64_t rule) {
    std::size_t followed = 0;
    for (const Numbering& numbering : Numberings(database).All()) {
        if (!numbering.Names(rule)) continue;
        const auto last = std::find_if(numbering.parts.rbegin(), numbering.parts.rend(),
                                       [rule](const NumberingPart& part) { return part.rule == rule; });
        if (last == numbering.parts.rbegin() || last->then == Then::Stop) return false;
        ++followed;
    }
    return followed > 0;
}

void StoreNumbering(Database& database, Patience patience, const Numbering& numbering) {
    const std::wstring ticket = NewTicket();
    InTransaction(database, patience, OnUniqueKey::Retry, [&] {
        StoreNumberingWithin(database, numbering, ticket);
        return true;
    });
}

void StoreNumberingWithin(Database& database, const Numbering& numbering, const std::wstring& ticket) {
    Numbering stored = numbering;
    const auto before =
        database.Prepare(std::wstring(NumberingSelect) + L" WHERE name = ?").Set(numbering.name).First(ReadNumbering);
    if (before && Journal(database, before->id).OfTicket(ticket)) return; // its COMMIT was not answered
    CheckNumbering(numbering, Rules(database).All());
    if (before && numbering.revision == 0 && before->parts.empty()) { // it was removed, and comes back
        stored.id = before->id;
        stored.revision = before->revision;
    }
    if (before)
        Replace(database, stored);
    else
        Add(database, stored);
    Journal(database, stored.id)
        .Write(acts::Settings, stored.name, L"revision " + std::to_wstring(stored.revision) + L", " + TextOf(stored),
               ticket);
}

} // namespace ledger
