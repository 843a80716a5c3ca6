#include "ledger/core/Finding.h"

namespace ledger {

const KindOfFinding& Describe(FindingKind kind) {
    static const KindOfFinding gap = {L"gap",
                                      L"numbers were left out, or their rows were removed behind the ledger's back",
                                      L"compare with a backup; adopt the codes if they are in use elsewhere", false};
    static const KindOfFinding room = {L"room", L"the series will soon have no number left",
                                       L"import a rule with a longer number band under another name", false};
    static const KindOfFinding duplicate = {L"duplicate", L"people may take the codes for the same one",
                                            L"void one of them, and let the rule change letter case", false};
    static const KindOfFinding lost = {L"lost", L"a code was removed behind the ledger's back",
                                       L"bring its row back from a backup", false};
    static const KindOfFinding uncounted = {
        L"uncounted", L"a code was put in, or its number was removed, behind the ledger's back",
        L"bring the number back from a backup, or remove a code that nobody issued", false};
    static const KindOfFinding changed = {L"changed",
                                          L"the row, or the one before it in its chain, is not as it was stored",
                                          L"bring the row back from a backup", false};
    static const KindOfFinding act = {L"act", L"the journal, or rows that an act brought, were changed or removed",
                                      L"bring them back from a backup", false};
    static const KindOfFinding voided = {L"void", L"the mark of a void code and the journal do not agree",
                                         L"audit --repair marks the codes as the journal says", true};
    static const KindOfFinding settings = {L"settings", L"the rule is not as it was last imported",
                                           L"audit --repair sets it as the journal says", true};
    static const KindOfFinding definition = {L"definition",
                                             L"a definition was changed or removed behind the ledger's back",
                                             L"bring it back from a backup", false};
    static const KindOfFinding lease = {L"lease", L"the account of numbers that were set aside was changed or removed",
                                        L"bring it back from a backup", false};
    static const KindOfFinding orphan = {L"orphan", L"the rule of these rows was removed behind the ledger's back",
                                         L"bring the rule back from a backup", false};
    static const KindOfFinding fields = {L"fields", L"the record stored with the code cannot be read",
                                         L"bring the row back from a backup", false};
    static const KindOfFinding head = {
        L"head", L"what was there when the heads were written was removed or changed since",
        L"an older copy of the database may have been restored: compare with a newer backup", false};
    switch (kind) {
    case FindingKind::Gap: return gap;
    case FindingKind::Room: return room;
    case FindingKind::Duplicate: return duplicate;
    case FindingKind::Lost: return lost;
    case FindingKind::Uncounted: return uncounted;
    case FindingKind::Changed: return changed;
    case FindingKind::Act: return act;
    case FindingKind::Void: return voided;
    case FindingKind::Settings: return settings;
    case FindingKind::Definition: return definition;
    case FindingKind::Lease: return lease;
    case FindingKind::Orphan: return orphan;
    case FindingKind::Fields: return fields;
    case FindingKind::Head: return head;
    }
    return changed;
}

} // namespace ledger
