#include "hosts/script/ErrorLog.h"

#include "hosts/common/Console.h"
#include "hosts/common/ExceptionTexts.h"
#include "hosts/common/Text.h"

namespace hosts::script {

namespace {

std::wstring Account(const ExceptionTexts& texts) {
    const std::wstring source = texts.Source().empty() ? L"error" : texts.Source();
    const std::wstring description = texts.Description().empty() ? L"no description" : texts.Description();
    return source + L": " + description + L" (" + CodeText(texts.Code()) + L")";
}

} // namespace

DWORD ErrorLog::AddFile(const std::wstring& path) {
    mvarFiles.push_back(path);
    return static_cast<DWORD>(mvarFiles.size() - 1);
}

std::wstring ErrorLog::PlaceOf(IActiveScriptError& error) const {
    DWORD file = 0;
    ULONG line = 0;
    LONG column = 0;
    if (FAILED(error.GetSourcePosition(&file, &line, &column)) || file >= mvarFiles.size()) return {};
    return mvarFiles[file] + L"(" + std::to_wstring(line + 1) + L", " + std::to_wstring(column + 1) + L") ";
}

void ErrorLog::Report(IActiveScriptError& error) {
    ExceptionTexts texts;
    error.GetExceptionInfo(texts.Out());
    texts.FillIn();
    Report(PlaceOf(error) + Account(texts));
}

void ErrorLog::Report(const std::wstring& message) {
    ++mvarCount;
    ReportLine(OneLine(message));
}

} // namespace hosts::script
