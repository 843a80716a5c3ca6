#include "common/Error.h"

#include <utility>

#include "common/Ports.h"

namespace kestrel {

namespace {

constexpr std::uint32_t ObjectErrorBase = 0x80040000U;
constexpr std::uint32_t PlainErrorBase = 0x800A0000U;

bool IsRunTimeError(Message message) { return message < Message::CantBeChanged; }

} // namespace

Error::Error(Message message, String appended)
    : mvarMessage(message), mvarPlain(IsRunTimeError(message)), mvarAppended(std::move(appended)) {}

Error Error::WithDetail(Message message, const String& detail) {
    return Error(message, String(TwoLineBreaks) + detail);
}

Error Error::Plain(Message message) {
    Error error(message);
    error.mvarPlain = true;
    return error;
}

std::uint32_t Error::Code() const noexcept {
    return (mvarPlain ? PlainErrorBase : ObjectErrorBase) + static_cast<std::uint32_t>(Number());
}

String Error::Description() const { return TheStrings().Text(mvarMessage) + mvarAppended; }

} // namespace kestrel
