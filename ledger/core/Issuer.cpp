#include "ledger/core/Issuer.h"

#include "ledger/core/FastIssuer.h"
#include "ledger/core/GaplessIssuer.h"

namespace ledger {

std::unique_ptr<Issuer> MakeIssuer(const Workplace& workplace) {
    if (workplace.rule.policy == Policy::Fast) return std::make_unique<FastIssuer>(workplace);
    return std::make_unique<GaplessIssuer>(workplace);
}

} // namespace ledger
