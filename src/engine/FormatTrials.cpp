#include "engine/FormatTrials.h"

#include <algorithm>
#include <vector>

#include "common/Numbers.h"
#include "common/Ports.h"

namespace kestrel {

namespace {

// What the platform formats without losing a digit.
constexpr std::size_t MostDigitsTried = 28;
// Long enough for what a format may put around a text, short enough to try them all.
constexpr std::size_t LongestTextTried = 32;

String KeyOf(const String& format, std::int32_t length) { return ToText(length) + L' ' + format; }

// The smallest and the largest number of each count of digits, the longest first.
std::vector<String> Numbers(std::size_t length) {
    std::vector<String> numbers;
    for (std::size_t digits = std::min(length, MostDigitsTried); digits >= 1; --digits) {
        numbers.push_back(L'1' + String(digits - 1, L'0'));
        numbers.emplace_back(digits, L'9');
    }
    return numbers;
}

// In a form that every locale reads: early and late days of each month, morning and evening. A date that lacks its year
// is read as one of the current year: of two years at least one is another, whenever the check is made.
std::vector<String> DatesOfTwoYears() {
    std::vector<String> dates;
    for (const wchar_t* year : {L"2019-", L"2026-"})
        for (int month = 1; month <= 12; ++month) {
            const String text = year + String(month < 10 ? L"0" : L"") + ToText(month);
            dates.push_back(text + L"-05 01:02:03");
            dates.push_back(text + L"-26 23:45:56");
        }
    return dates;
}

// Small and capital letters in turn, so that a change of case shows.
String Letters(std::size_t length) {
    String text(length, L'x');
    for (std::size_t i = 0; i < length; i += 2)
        text[i] = L'K';
    return text;
}

std::vector<String> Texts(std::size_t length) {
    std::vector<String> texts{Letters(length)};
    for (std::size_t size = std::min(length - 1, LongestTextTried); size >= 1; --size)
        texts.push_back(Letters(size));
    return texts;
}

// The number that the next code counts on from is read from the beginning of the text.
bool ReadsBack(const Formatted& number) { return Increased(number.text) == Increased(number.value); }

// Formats values until one shows what is wrong.
class Trial {
  public:
    Trial(const String& format, std::int32_t length)
        : mvarFormat(format), mvarLength(static_cast<std::size_t>(length)) {}

    // A value that the format leaves as it is may be one that it does not apply to, and says nothing about it.
    void TryAll(const std::vector<String>& values) {
        for (const auto& value : values) {
            if (mvarUnstable) return;
            const Formatted tried{value, TheText().Format(value, mvarFormat)};
            mvarChanges = mvarChanges || tried.text != value;
            if (tried.text.size() != mvarLength || tried.text == value) continue;
            mvarFits = true;
            FormatAgain(tried.text);
        }
    }

    void TryNumbers(const std::vector<String>& numbers) {
        mvarChanges = true;
        for (const auto& number : numbers) {
            if (mvarUnread || mvarNoNumber || mvarUnstable) return;
            const Formatted tried{number, TheText().Format(number, mvarFormat)};
            if (tried.text.size() != mvarLength) continue;
            mvarFits = true;
            if (!ReadsBack(tried))
                mvarUnread = tried;
            else if (!NumericValue(tried.text))
                mvarNoNumber = tried;
            else
                FormatAgain(tried.text);
        }
    }

    [[nodiscard]] FormatTrial Result() const {
        return {mvarFits || !mvarChanges, mvarUnstable, mvarUnread, mvarNoNumber};
    }

  private:
    void FormatAgain(const String& text) {
        Formatted again{text, TheText().Format(text, mvarFormat)};
        if (again.text != text) mvarUnstable = std::move(again);
    }

    const String& mvarFormat;
    std::size_t mvarLength;
    bool mvarFits = false;
    bool mvarChanges = false;
    std::optional<Formatted> mvarUnstable;
    std::optional<Formatted> mvarUnread;
    std::optional<Formatted> mvarNoNumber;
};

// A format that can be applied to a number changes one with a zero in front of it, unless it keeps all zeros.
std::vector<String> WithLeadingZero(std::vector<String> numbers) {
    for (auto& number : numbers)
        number.insert(0, 1, L'0');
    return numbers;
}

FormatTrial TriedOnAnything(const String& format, std::int32_t length) {
    Trial trial(format, length);
    trial.TryAll(DatesOfTwoYears());
    trial.TryAll(WithLeadingZero(Numbers(static_cast<std::size_t>(length))));
    trial.TryAll(Texts(static_cast<std::size_t>(length)));
    return trial.Result();
}

FormatTrial TriedOnNumbers(const String& format, std::int32_t length) {
    Trial trial(format, length);
    trial.TryNumbers(Numbers(static_cast<std::size_t>(length)));
    return trial.Result();
}

template <class Try>
const FormatTrial& Once(std::unordered_map<String, FormatTrial>& known, const String& format, std::int32_t length,
                        Try tried) {
    const auto [trial, isNew] = known.try_emplace(KeyOf(format, length));
    if (isNew && length >= 1 && length <= FormatTrials::LongestTried) trial->second = tried(format, length);
    return trial->second;
}

} // namespace

String FormattedWith(const String& format, const String& value) {
    return format.empty() ? value : TheText().Format(value, format);
}

const FormatTrial& FormatTrials::OfAnything(const String& format, std::int32_t length) {
    return Once(mvarOfAnything, format, length, TriedOnAnything);
}

const FormatTrial& FormatTrials::OfNumbers(const String& format, std::int32_t length) {
    return Once(mvarOfNumbers, format, length, TriedOnNumbers);
}

} // namespace kestrel
