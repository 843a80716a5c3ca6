#include "hosts/script/TextStreams.h"

#include <iostream>
#include <iterator>
#include <string>

#include "hosts/common/Console.h"
#include "hosts/common/HostError.h"
#include "hosts/common/Utf8.h"

namespace hosts::script {

namespace {

Variant ReadLine() {
    std::string line;
    if (!std::getline(std::cin, line)) throw HostError(L"standard input has no more lines");
    if (line.ends_with('\r')) line.pop_back();
    return Variant(FromOwnUtf8(line));
}

Variant ReadAll() {
    const std::string bytes((std::istreambuf_iterator<char>(std::cin)), std::istreambuf_iterator<char>());
    return Variant(FromOwnUtf8(bytes));
}

bool AtEndOfStream() { return std::cin.peek() == std::char_traits<char>::eof(); }

} // namespace

InputStream::InputStream() {
    Define(L"ReadLine", [](const CallArguments&) { return ReadLine(); });
    Define(L"ReadAll", [](const CallArguments&) { return ReadAll(); });
    Define(L"AtEndOfStream", [](const CallArguments&) { return Variant(AtEndOfStream()); });
}

OutputStream::OutputStream(Target target) {
    const auto print = target == Target::Out ? &PrintText : &ReportText;
    Define(L"Write", [print](const CallArguments& arguments) {
        print(arguments.Text(0));
        return Variant();
    });
    Define(L"WriteLine", [print](const CallArguments& arguments) {
        print((arguments.Count() == 0 ? std::wstring() : arguments.Text(0)) + L"\n");
        return Variant();
    });
}

} // namespace hosts::script
