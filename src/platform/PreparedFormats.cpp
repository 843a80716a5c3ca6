#include "platform/PreparedFormats.h"

#include <oleauto.h>

#include <algorithm>

namespace kestrel {

namespace {

class Locked {
  public:
    explicit Locked(SRWLOCK& lock) noexcept : mvarLock(lock) { AcquireSRWLockExclusive(&mvarLock); }
    // Taken once, given back once.
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;
    ~Locked() { ReleaseSRWLockExclusive(&mvarLock); }

  private:
    SRWLOCK& mvarLock;
};

} // namespace

bool PreparedFormats::Prepare(const String& format, LCID locale, Tokens& tokens) {
    const Locked locked(mvarLock);
    if (const auto* entry = Find(format, locale)) {
        tokens = entry->tokens;
        return true;
    }
    if (FAILED(VarTokenizeFormatString(const_cast<LPOLESTR>(format.c_str()), tokens.data(),
                                       static_cast<int>(tokens.size()), WeekBeginsOnSunday, YearBeginsOnFirstOfJanuary,
                                       locale, nullptr)))
        return false;
    Keep(format, locale, tokens);
    return true;
}

const PreparedFormats::Entry* PreparedFormats::Find(const String& format, LCID locale) const noexcept {
    const auto found = std::find_if(mvarEntries.begin(), mvarEntries.end(), [&](const Entry& entry) {
        return entry.locale == locale && entry.format == format;
    });
    return found != mvarEntries.end() ? &*found : nullptr;
}

void PreparedFormats::Keep(const String& format, LCID locale, const Tokens& tokens) {
    Entry& entry = mvarEntries[mvarNext];
    entry.locale = 0; // of no format until it is whole again
    entry.format = format;
    entry.tokens = tokens;
    entry.locale = locale;
    mvarNext = (mvarNext + 1) % Most;
}

} // namespace kestrel
