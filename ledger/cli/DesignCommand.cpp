// rule design, and rule new without a pattern: the component's own designer
#include <windows.h>

#include "hosts/common/Console.h"
#include "hosts/common/Text.h"
#include "ledger/cli/Commands.h"
#include "ledger/cli/ExitCode.h"
#include "ledger/cli/RuleStoring.h"
#include "ledger/core/RuleCalendar.h"
#include "ledger/core/RuleChange.h"
#include "ledger/core/definition/DefinitionText.h"

namespace ledger {

namespace {

// Published with the component's event interface and fixed.
constexpr DISPID SaveEvent = 1;
constexpr DISPID AddFieldEvent = 5;
constexpr DISPID GetSettingsEvent = 12;

// Whether windows can be opened here: a service has no desktop that anybody sees, and a system may have no display at
// all.
bool HasDisplay() {
    USEROBJECTFLAGS flags{};
    const bool known =
        GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags, nullptr) != 0;
    if (known && (flags.dwFlags & WSF_VISIBLE) == 0) return false;
    const HWND probe = CreateWindowExW(0, L"STATIC", nullptr, WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    if (probe == nullptr) return false;
    DestroyWindow(probe);
    return true;
}

class Designer {
  public:
    // The change says what is stored beside the definition: the name, and the revision of the rule as it was read.
    Designer(Session& session, RuleChange change) : mvarSession(session), mvarChange(std::move(change)) {}

    // Without it the rule is an empty one.
    void Load(const StoredRule& rule) {
        LoadWithWeek(mvarRule, WithoutValues(rule.definition.text), rule.settings.week);
    }

    // Whoever makes a rule may do anything to it.
    void AllowEverything() const {
        for (const wchar_t* right : {L"AllowAddBand", L"AllowDropBand", L"AllowSetup", L"AllowFieldManage"})
            mvarRule.Component().Put(right, hosts::Variant(true));
        mvarRule.Component().Put(L"CodeUCased", hosts::Variant(false));
    }

    void Add(const wchar_t* list, const std::vector<std::wstring>& names) const {
        for (const std::wstring& text : names) {
            const hosts::Variant name(text);
            mvarRule.Component().Object(list).Call(L"Add", {&name});
        }
    }

    int Show() {
        if (!HasDisplay())
            throw hosts::HostError(
                L"there is no display to open the designer on; use \"kledger rule new NAME PATTERN\", or "
                L"\"kledger rule export\" and \"kledger rule import\", or start it where windows can be shown");
        mvarRule.Component().Put(L"Name", hosts::Variant(mvarChange.name));
        // As the component writes it: a text from elsewhere says the same in other words, and nobody changed anything.
        mvarHeld = mvarRule.Definition();
        Listen();
        const hosts::Variant title(L"Rule " + mvarChange.name);
        const hosts::Variant allowSetup(true);
        mvarRule.Component().Call(L"ShowDesigner", {&title, &allowSetup});
        mvarRule.Events().RethrowFailure();
        mvarSession.output.Line(mvarChanged ? L"saved" : L"not changed",
                                {{"rule", ToJson(mvarChange.name)}, {"saved", mvarChanged}});
        return mvarRefused ? ExitFailed : ExitDone;
    }

  private:
    void Listen() {
        mvarRule.Events().On(GetSettingsEvent,
                             [this](const hosts::EventArguments& arguments) { arguments.SetText(1, mvarHeld); });
        mvarRule.Events().On(SaveEvent, [this](const hosts::EventArguments& arguments) {
            mvarRefused = !Store(arguments.Text(0));
            mvarChanged = mvarChanged || !mvarRefused;
            if (!mvarRefused) mvarHeld = arguments.Text(0);
            arguments.SetFlag(1, !mvarRefused);
        });
        mvarRule.Events().On(AddFieldEvent, [this](const hosts::EventArguments&) { AddField(); });
    }

    // The designer asks for a field and leaves its name to us.
    void AddField() const {
        const hosts::Dispatch fields = mvarRule.Component().Object(L"UsrFields");
        for (long number = fields.Get(L"Count").Number() + 1;; ++number) {
            const hosts::Variant name(L"Field " + std::to_wstring(number));
            try {
                static_cast<void>(fields.Item(name));
            } catch (const hosts::DispatchError&) { // there is none of that name
                fields.Call(L"Add", {&name});
                return;
            }
        }
    }

    // Stores the text as the rule's new definition; false, and tells why, where it cannot be.
    bool Store(const std::wstring& definition) {
        try {
            mvarChange.definition = definition;
            // The text has the day that weeks begin on as the designer left it, and the rule's own would hide it.
            RuleSettings settings = SettingsAfter(mvarSession.database, mvarSession.patience, mvarChange);
            if (settings.week) settings.week = WeekOf(definition);
            mvarChange.settings = settings;
            CodeMaker maker(definition, settings);
            mvarChange.revision =
                ChangeRule(mvarSession.database, mvarSession.patience, mvarChange, maker).rule.revision;
            return true;
        } catch (const hosts::HostError& error) {
            hosts::ReportLine(L"not saved: " + hosts::OneLine(error.Message()));
            return false;
        }
    }

    Session& mvarSession;
    RuleChange mvarChange;
    hosts::Rule mvarRule;
    std::wstring mvarHeld; // the definition that the ledger has
    bool mvarChanged = false;
    bool mvarRefused = false; // the last time that something was to be saved
};

} // namespace

int DesignRule(Session& session, const DesignOptions& options) {
    const StoredRule rule = ResolveRule(session, options.rule);
    RuleChange change;
    change.name = rule.name;
    change.revision = rule.revision;
    Designer designer(session, change);
    designer.Load(rule);
    designer.Add(L"UsrFields", options.fields);
    designer.Add(L"UsrMacros", options.macros);
    return designer.Show();
}

int DesignNewRule(Session& session, const NewRuleOptions& options) {
    RuleChange change;
    change.name = options.name;
    change.policy = PolicyOf(options.policy);
    change.leaseSize = options.leaseSize;
    change.revision = 0; // a rule that somebody else makes meanwhile is not overwritten
    change.settings = SettingsWith(session, options.name, options.numbering);
    Designer designer(session, change);
    designer.AllowEverything();
    designer.Add(L"UsrFields", options.fields);
    designer.Add(L"UsrMacros", options.macros);
    return designer.Show();
}

} // namespace ledger
