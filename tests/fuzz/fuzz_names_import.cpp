// Any text as names: every piece is kept in order, and none of them has a key.
#include <algorithm>

#include "fuzz/Fuzz.h"
#include "lists/Names.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestrel;
    using namespace kestrel::test;
    const StandIns standIns;
    const auto names = Make<Names>();
    const String text = TextOf(data, size);
    names->ImportNames(text);
    const auto pieces = names->Snapshot();
    Require(Join(pieces, L";") == text, "the pieces make up the text again");
    Require(names->Count() == (text.empty() ? 0 : std::count(text.begin(), text.end(), L';') + 1),
            "there is one string per piece");
    for (const auto& piece : pieces) {
        const auto first = std::find(pieces.begin(), pieces.end(), piece);
        const bool repeated = first != pieces.begin() + (&piece - pieces.data());
        Require(Succeeds([&] { names->Add(piece); }) != repeated,
                "each text can be added once beside the imported one");
        Require(names->Item(piece) == piece, "what was added is found by its text");
    }
    return 0;
}
