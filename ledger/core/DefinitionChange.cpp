#include "ledger/core/DefinitionChange.h"

#include <map>
#include <set>
#include <utility>

#include "ledger/core/Leases.h"

namespace ledger {

namespace {

class Recount {
  public:
    Recount(Session& session, const StoredRule& rule, CodeMaker& maker)
        : mvarCodes(session.database, rule.id), mvarLeases(session.database, rule.id), mvarMaker(maker) {}

    ChangeReport Run() {
        for (auto& [code, number] : mvarCodes.AllNumbers())
            mvarOld[code].push_back(std::move(number));
        std::vector<std::wstring> codes;
        mvarCodes.ForEach([&codes](const std::wstring& code) { codes.push_back(code); });
        mvarCodes.RemoveAllNumbers();
        mvarLeases.RemoveAll(); // of series that may be no more; who holds one is stopped by the new revision
        for (const std::wstring& code : codes)
            Count(code);
        return {static_cast<std::int64_t>(codes.size()), mvarForeign};
    }

  private:
    void Count(const std::wstring& code) {
        for (const NumberHeld& number : NumbersOf(code))
            if (mvarTaken.insert(number).second) mvarCodes.AddNumbers(code, {&number, 1});
    }

    std::vector<NumberHeld> NumbersOf(const std::wstring& code) {
        try {
            return mvarMaker.Recognise(code).numbers;
        } catch (const hosts::RecordError&) { // made by an older definition, or by nobody's
            ++mvarForeign;
            return mvarOld[code];
        }
    }

    Codes mvarCodes;
    Leases mvarLeases;
    CodeMaker& mvarMaker;
    std::map<std::wstring, std::vector<NumberHeld>> mvarOld;
    std::set<NumberHeld> mvarTaken;
    std::int64_t mvarForeign = 0;
};

void RefuseOtherLength(std::int64_t codes, const StoredRule& rule, const CodeMaker& maker) {
    const auto length = static_cast<std::int64_t>(maker.CodeLength());
    if (codes == 0 || length == rule.codeLength) return;
    throw hosts::HostError(L"rule \"" + rule.name + L"\" has issued " + std::to_wstring(codes) + L" codes of " +
                           std::to_wstring(rule.codeLength) + L" characters and the new definition makes codes of " +
                           std::to_wstring(length) + L"; keep it as a rule of another name");
}

} // namespace

ChangeReport ChangeDefinition(Session& session, StoredRule& rule, CodeMaker& maker) {
    auto stored = InTransaction(session.database, session.patience, OnUniqueKey::Fail, [&] {
        Rules rules(session.database);
        rules.Enter(rule);
        RefuseOtherLength(Codes(session.database, rule.id).Count(), rule, maker);
        StoredRule changed = rule;
        changed.codeLength = static_cast<std::int64_t>(maker.CodeLength());
        rules.Replace(changed);
        const ChangeReport report = Recount(session, rule, maker).Run();
        return std::pair(changed, report);
    });
    rule = stored.first;
    return stored.second;
}

} // namespace ledger
