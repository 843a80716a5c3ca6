#include "ledger/core/Recount.h"

#include <utility>

#include "ledger/core/Json.h"

namespace ledger {

namespace {

constexpr std::size_t CodesCounted = 1000;

} // namespace

Recount::Recount(Database& database, std::int64_t ruleId, std::int64_t act)
    : mvarRuleId(ruleId), mvarCodes(database, ruleId), mvarAct(act) {
    for (NumberHeld& held : mvarCodes.AllNumbers())
        mvarTaken.insert(std::move(held));
}

std::int64_t Recount::Run(CodeMaker& maker, std::int64_t definition) {
    std::int64_t counted = 0;
    std::wstring last;
    for (;;) {
        const std::vector<CodeRow> codes = mvarCodes.After(last, CodesCounted);
        if (codes.empty()) return counted;
        for (const CodeRow& code : codes) {
            if (definition != 0 && code.definition != definition) continue;
            ++counted;
            Count(maker, code);
        }
        last = codes.back().code;
    }
}

void Recount::Count(CodeMaker& maker, const CodeRow& code) {
    std::vector<NumberHeld> numbers;
    try {
        numbers = maker.Recognise(code.code, FieldsOf(code.fields)).numbers;
    } catch (const hosts::RecordError&) { // made by an older definition
        ++mvarForeign;
    }
    for (NumberHeld& held : numbers) {
        if (mvarTaken.insert(held).second)
            Add(code, std::move(held));
        else if (mvarCodes.Holder(held) != code.code)
            ++mvarShared;
    }
}

void Recount::Add(const CodeRow& code, NumberHeld held) {
    NumberRow row{std::move(held), 0, mvarAct, {}};
    row.seal = SealOf(mvarRuleId, code, row, {});
    mvarSum.Add(row.seal);
    mvarCodes.AddNumbers(code.code, {&row, 1});
}

} // namespace ledger
