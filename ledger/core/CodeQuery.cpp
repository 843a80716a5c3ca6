#include "ledger/core/CodeQuery.h"

#include <algorithm>
#include <set>

#include "ledger/core/Json.h"
#include "ledger/core/UtcTime.h"

namespace ledger {

namespace {

using hosts::HostError;

constexpr std::size_t CodesFound = 1000;

void CheckTime(const std::wstring& text, const wchar_t* option) {
    if (text.empty() || TimeOf(text)) return;
    throw HostError(
        std::wstring(option) + L" \"" + text +
        L"\" is no time; expected a date such as 2024-05-31, or 2024, 2024-05 or 2024-05-31T10:00:00Z (UTC)");
}

// One consistent piece of the answer after another.
class CodeReader {
  public:
    CodeReader(Database& database, const CodeWish& wish) : mvarDatabase(database), mvarWish(wish) {}

    void Run(const std::function<void(const FoundCode&)>& visit) {
        for (const StoredRule& rule : Rules(mvarDatabase).All()) {
            const bool isDone = mvarDone.contains(rule.id); // by an attempt before
            if (isDone || (!mvarWish.rule.empty() && rule.name != mvarWish.rule)) continue;
            if (rule.id != mvarRule) mvarLast.clear();
            mvarRule = rule.id;
            while (ReadPiece(rule, visit)) {
            }
            mvarDone.insert(rule.id);
        }
    }

  private:
    bool ReadPiece(const StoredRule& rule, const std::function<void(const FoundCode&)>& visit) {
        const std::vector<FoundCode> piece = Query(rule).Rows([&rule](const Statement& row) {
            FoundCode code;
            code.rule = rule.name;
            code.row = ReadCode(row, 1);
            code.voidReason = row.Text(CodeColumnCount + 1);
            code.voidAt = row.Text(CodeColumnCount + 2);
            code.voidBy = row.Text(CodeColumnCount + 3);
            return code;
        });
        for (FoundCode code : piece) {
            mvarLast = code.row.code;
            code.fields = FieldsOf(code.row.fields);
            if (Fits(code)) visit(code);
        }
        return piece.size() == CodesFound;
    }

    Statement& Query(const StoredRule& rule) {
        std::wstring sql = std::wstring(L"SELECT ") + CodeColumns +
                           L", j.detail, j.acted_at, j.acted_by FROM kestrel_codes c LEFT JOIN kestrel_journal j ON "
                           L"j.rule_id = c.rule_id AND j.number = c.void_act WHERE c.rule_id = ? AND c.code > ?";
        std::vector<std::wstring> texts;
        const auto add = [&](const std::wstring& value, const wchar_t* condition, const std::wstring& end) {
            if (value.empty()) return;
            sql += condition;
            texts.push_back(value + end);
        };
        if (mvarWish.state == L"void") sql += L" AND c.void_act > 0";
        add(mvarWish.state == L"void" ? std::wstring() : mvarWish.state,
            L" AND c.void_act = 0 AND REPLACE(c.origin, 'numbered', 'issued') = ?", {});
        add(mvarWish.since, L" AND c.stored_at >= ?", {});
        add(mvarWish.until, L" AND c.stored_at <= ?", L"~"); // behind everything that begins so
        add(mvarWish.ticket, L" AND c.ticket = ?", {});
        add(mvarWish.series,
            L" AND EXISTS (SELECT 1 FROM kestrel_numbers n WHERE n.rule_id = c.rule_id AND n.code = c.code AND "
            L"n.series = ?)",
            {});
        Statement& query = mvarDatabase.Prepare(sql + L" ORDER BY c.code LIMIT " + std::to_wstring(CodesFound));
        query.Set(rule.id).Set(mvarLast);
        for (const std::wstring& text : texts)
            query.Set(text);
        return query;
    }

    [[nodiscard]] bool Fits(const FoundCode& code) const {
        if (!mvarWish.pattern.empty() && !FitsPattern(code.row.code, mvarWish.pattern)) return false;
        return std::ranges::all_of(mvarWish.fields, [&code](const auto& wanted) {
            return std::ranges::find(code.fields, wanted) != code.fields.end();
        });
    }

    Database& mvarDatabase;
    const CodeWish& mvarWish;
    std::set<std::int64_t> mvarDone; // rules
    std::int64_t mvarRule = 0;       // the place that was reached
    std::wstring mvarLast;
};

} // namespace

bool FitsPattern(const std::wstring& text, const std::wstring& pattern) {
    std::size_t at = 0;
    std::size_t shape = 0;
    std::size_t star = std::wstring::npos; // the last one seen, and where the text stood then
    std::size_t mark = 0;
    while (at < text.size()) {
        if (shape < pattern.size() && pattern[shape] == L'*') {
            star = shape++;
            mark = at;
        } else if (shape < pattern.size() && (pattern[shape] == L'?' || pattern[shape] == text[at])) {
            ++at;
            ++shape;
        } else if (star != std::wstring::npos) {
            shape = star + 1;
            at = ++mark;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of(L'*', shape) == std::wstring::npos;
}

void CheckWish(const CodeWish& wish) {
    CheckTime(wish.since, L"--since");
    CheckTime(wish.until, L"--until");
    const bool knownState =
        wish.state.empty() || wish.state == L"issued" || wish.state == L"adopted" || wish.state == L"void";
    if (!knownState) throw HostError(L"--state \"" + wish.state + L"\" is none; expected issued, adopted or void");
}

void ForEachCode(Database& database, Patience patience, const CodeWish& wish,
                 const std::function<void(const FoundCode&)>& visit) {
    CodeReader reader(database, wish);
    InSnapshot(database, patience, [&] {
        reader.Run(visit);
        return true;
    });
}

} // namespace ledger
