#include "ledger/cli/Heads.h"

#include <algorithm>
#include <sstream>

#include "hosts/common/TextFile.h"
#include "hosts/common/Utf8.h"
#include "ledger/core/Json.h"

namespace ledger {

namespace {

// What the first line of such a file says.
constexpr const char* Title = "kledger heads 1";

std::wstring TextOf(const Json& json, const char* name) { return hosts::FromOwnUtf8(json.at(name).get<std::string>()); }

void ReadHead(const std::wstring& line, HeadsOfRules& heads) {
    const Json json = Json::parse(hosts::ToUtf8(line));
    Head head;
    head.chain = TextOf(json, "chain");
    head.band = TextOf(json, "band");
    head.series = TextOf(json, "series");
    head.lease = json.at("lease").get<std::int64_t>();
    head.number = json.at("number").get<std::int64_t>();
    head.seal = TextOf(json, "seal");
    heads[TextOf(json, "rule")].push_back(std::move(head));
}

} // namespace

HeadsOfRules ReadHeads(const std::wstring& file) {
    std::wistringstream lines(hosts::ReadTextFile(file));
    HeadsOfRules heads;
    std::wstring line;
    std::size_t number = 1;
    if (!std::getline(lines, line) || line.find(hosts::FromOwnUtf8(Title)) == std::wstring::npos)
        throw hosts::HostError(L"\"" + file +
                               L"\" holds no heads; make such a file with: kledger audit --write-heads FILE");
    while (std::getline(lines, line)) {
        ++number;
        try {
            ReadHead(line, heads);
        } catch (const Json::exception&) {
            throw hosts::HostError(L"\"" + file + L"\", line " + std::to_wstring(number) +
                                   L": this is no head of a chain");
        }
    }
    return heads;
}

void WriteHeads(const std::wstring& file, const HeadsOfRules& heads) {
    std::wstring text = JsonText({{"title", Title}}) + L"\n";
    for (const auto& [rule, of] : heads)
        for (const Head& head : of)
            text += JsonText({{"rule", ToJson(rule)},
                              {"chain", ToJson(head.chain)},
                              {"band", ToJson(head.band)},
                              {"series", ToJson(head.series)},
                              {"lease", head.lease},
                              {"number", head.number},
                              {"seal", ToJson(head.seal)}}) +
                    L"\n";
    hosts::WriteTextFile(file, text);
}

} // namespace ledger
