// Runs VBScript and JScript files on a console, with the events of automation objects.
#include "hosts/common/Console.h"
#include "hosts/common/Dispatch.h"
#include "hosts/common/Text.h"
#include "hosts/script/Session.h"

namespace {

using namespace hosts;
using namespace hosts::script;

constexpr const wchar_t* Program = L"kscript";
constexpr int BadUsage = 2;

struct Task {
    Options options;
    std::vector<Source> sources;
};

Task TaskFrom(const std::vector<std::wstring>& arguments) {
    Task task{ParseOptions(arguments), {}};
    task.sources = ReadSources(task.options);
    return task;
}

int RunTask(const Task& task) {
    const Apartment apartment;
    const int exitCode = Session(task.options).Run(task.sources);
    return task.options.checks.AfterEnd(exitCode);
}

int Body(const std::vector<std::wstring>& arguments) {
    if (AsksForHelp(arguments)) {
        PrintLine(Help());
        return 0;
    }
    Task task;
    try {
        task = TaskFrom(arguments);
    } catch (const HostError& error) {
        ReportLine(std::wstring(Program) + L": " + OneLine(error.Message()));
        return BadUsage;
    }
    return RunTask(task);
}

} // namespace

int main() { return RunProgram(Program, &Body); }
