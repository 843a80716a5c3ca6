#include "ledger/core/Issuer.h"

#include <algorithm>

#include "ledger/core/FastIssuer.h"
#include "ledger/core/GaplessIssuer.h"
#include "ledger/core/Json.h"
#include "ledger/core/Series.h"

namespace ledger {

Outcome OutcomeOf(const std::wstring& code, const std::vector<NumberHeld>& numbers, const CodeMaker& maker) {
    Outcome outcome{code};
    for (const NumberHeld& held : numbers)
        if (const auto room = RoomLeft({held.band, held.series, 1, held.number, held.number}, maker.NumberBands()))
            outcome.rooms.push_back({held.band, held.series, room->left, room->percent});
    return outcome;
}

Outcome OutcomeOf(const NewCode& code, const CodeMaker& maker) {
    std::vector<NumberHeld> numbers;
    for (const NumberRow& row : code.numbers)
        numbers.push_back(row.held);
    return OutcomeOf(code.row.code, numbers, maker);
}

Outcome OutcomeOf(const hosts::RecordError& error) {
    Outcome outcome{{}, error.Message()};
    if (const auto* full = dynamic_cast<const SeriesFull*>(&error)) {
        outcome.full = true;
        outcome.next = full->Next();
    }
    return outcome;
}

std::unique_ptr<Issuer> MakeIssuer(const Workplace& workplace) {
    RefuseRetired(workplace.rule.settings, workplace.rule.name);
    if (workplace.rule.policy == Policy::Fast && !workplace.maker.NumberBands().empty())
        return std::make_unique<FastIssuer>(workplace);
    return std::make_unique<GaplessIssuer>(workplace);
}

void RefuseSharedBetweenSeries(const StoredRule& rule, const std::wstring& code) {
    if (rule.settings.series.empty()) return;
    throw hosts::RecordError(L"code " + code + L" is issued already: the rule counts separately by " +
                             rule.settings.series +
                             L", and another series has it; let another band tell the series' codes apart");
}

Outcome OutcomeOf(const CodeRow& stored, const Request& request, bool before) {
    if (stored.reuseAct > 0)
        return {{},
                L"key \"" + request.ticket + L"\" had code " + stored.code +
                    L", which was made void and whose number was given again; give the record a key of its own"};
    FieldValues then = FieldsOf(stored.fields);
    FieldValues now = FieldsOf(request.fields);
    std::ranges::sort(then);
    std::ranges::sort(now);
    if (then == now) return {stored.code, {}, before, false, 0};
    return {{},
            L"key \"" + request.ticket + L"\" has code " + stored.code + L" for " + stored.fields +
                L", and this record is " + request.fields + L"; give it a key of its own"};
}

std::wstring IssuedAlready(const std::wstring& code, const CodeMaker& maker) {
    return L"code " + code + L" is issued already" +
           (maker.NumberBands().empty() ? L", and no band of the rule numbers it on"
                                        : L", though not counted in its series; see kledger audit");
}

} // namespace ledger
