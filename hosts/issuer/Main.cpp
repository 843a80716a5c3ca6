// kissue: issues codes for records, with nothing but a rule's definition text and a file of codes.
#include "hosts/common/Console.h"
#include "hosts/common/TextFile.h"
#include "hosts/issuer/Issue.h"

namespace {

constexpr int WrongArguments = 2;

int Run(const std::vector<std::wstring>& arguments) {
    const auto line = hosts::ParseCommandLine(arguments);
    if (!line) {
        hosts::ReportLine(hosts::Usage);
        return WrongArguments;
    }
    const hosts::Apartment apartment;
    hosts::Rule rule;
    rule.Load(hosts::ReadDefinitionFile(line->rulePath));
    if (line->command == L"issue") return hosts::IssueRecords(rule, *line);
    if (line->command == L"preview") return hosts::PreviewCode(rule, *line);
    return hosts::ExplainCode(rule, *line);
}

} // namespace

int main() { return hosts::RunProgram(L"kissue", Run); }
