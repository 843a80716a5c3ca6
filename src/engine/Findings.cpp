#include "engine/Findings.h"

#include "common/Ports.h"

namespace kestrel {

namespace {

// The text with each "*" replaced by the next of the arguments, which are not looked into.
String Worded(StringView text, const std::vector<String>& arguments) {
    String sentence;
    auto next = arguments.begin();
    for (const wchar_t character : text) {
        if (character == L'*' && next != arguments.end())
            sentence += *next++;
        else
            sentence += character;
    }
    return sentence;
}

} // namespace

void Findings::Add(FindingKind kind, std::vector<String> arguments) {
    String sentence = Worded(TextOf(kind), arguments);
    if (mvarBand) sentence = L"[" + mvarBand->Name() + L"] " + sentence;
    mvarFindings.push_back({mvarBand, kind, std::move(arguments), std::move(sentence)});
}

const String& Findings::TextOf(FindingKind kind) {
    const auto number = static_cast<int>(kind);
    const auto [text, isNew] = mvarTexts.try_emplace(number);
    if (isNew) text->second = TheStrings().Text(number);
    return text->second;
}

} // namespace kestrel
