#include "hosts/common/TextFile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "hosts/common/HostError.h"
#include "hosts/common/TextSource.h"

using namespace std::string_literals;
using hosts::HostError;

namespace {

// A file of its own in the folder for temporary files; gone with the test.
class Scratch {
  public:
    explicit Scratch(const std::string& bytes = {}) {
        std::ofstream(mvarPath, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    }
    ~Scratch() {
        std::error_code error;
        std::filesystem::remove(mvarPath, error);
    }
    Scratch(const Scratch&) = delete; // one file, one owner
    Scratch& operator=(const Scratch&) = delete;

    [[nodiscard]] std::wstring Path() const { return mvarPath.wstring(); }
    [[nodiscard]] std::string Bytes() const {
        std::ifstream file(mvarPath, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }

  private:
    static std::filesystem::path NewPath() {
        static int count = 0;
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        return std::filesystem::temp_directory_path() / (test->name() + std::to_string(++count));
    }

    std::filesystem::path mvarPath = NewPath();
};

std::wstring MessageOf(const std::wstring& path) {
    try {
        static_cast<void>(hosts::ReadTextFile(path));
    } catch (const HostError& error) {
        return error.Message();
    }
    return L"no error";
}

} // namespace

TEST(TextFileTest, ReadsEveryUnicodeEncoding) {
    EXPECT_EQ(hosts::ReadTextFile(Scratch("Z\xC3\xBCrich").Path()), L"Z\u00FCrich");
    EXPECT_EQ(hosts::ReadTextFile(Scratch("\xEF\xBB\xBFZ\xC3\xBCrich").Path()), L"Z\u00FCrich");
    EXPECT_EQ(hosts::ReadTextFile(Scratch("\xFF\xFEZ\0\xFC\0"s).Path()), L"Z\u00FC");
    EXPECT_EQ(hosts::ReadTextFile(Scratch("\xFE\xFF\0Z\0\xFC"s).Path()), L"Z\u00FC");
    EXPECT_EQ(hosts::ReadTextFile(Scratch("").Path()), L"");
}

TEST(TextFileTest, ReadsACodePageThatIsNamed) {
    EXPECT_EQ(hosts::ReadTextFile(Scratch("Z\xFCrich").Path(), 1252), L"Z\u00FCrich");
    EXPECT_THROW(static_cast<void>(hosts::ReadTextFile(Scratch("x").Path(), 99999)), HostError);
}

TEST(TextFileTest, NamesTheFirstLineInAnotherEncoding) {
    const Scratch file("one\ntwo\nZ\xFCrich\n");
    EXPECT_EQ(MessageOf(file.Path()),
              L"\"" + file.Path() + L"\" is not UTF-8 (line 3); save it as UTF-8 or name its code page");
}

// More lines than are read at a time, in each encoding, and one line that is longer than that.
TEST(TextFileTest, ReadsFilesOfAnyLength) {
    std::string utf8;
    std::wstring text;
    for (int line = 0; line < 20'000; ++line) {
        utf8 += std::to_string(line) + " Z\xC3\xBC\xE2\x82\xAC\n";
        text += std::to_wstring(line) + L" Z\u00FC\u20AC\n";
    }
    utf8 += std::string(200'000, 'x') + "\nend";
    text += std::wstring(200'000, L'x') + L"\nend";
    std::string little = "\xFF\xFE";
    std::string big = "\xFE\xFF";
    for (const wchar_t character : text) {
        const auto low = static_cast<char>(character & 0xFF);
        const auto high = static_cast<char>(character >> 8);
        little += {low, high};
        big += {high, low};
    }
    for (const std::string& bytes : {utf8, "\xEF\xBB\xBF" + utf8, little, big})
        EXPECT_TRUE(hosts::ReadTextFile(Scratch(bytes).Path()) == text);
}

TEST(TextFileTest, ALineFeedIsOneCharacterInUtf16) {
    // Bytes that look like one across two characters, in a text that is read in pieces.
    std::string little = "\xFF\xFE";
    std::wstring text;
    for (int count = 0; count < 40'000; ++count) {
        little += "\x01\x0A\x00\x01"s;
        text += L"\u0A01\u0100";
    }
    EXPECT_TRUE(hosts::ReadTextFile(Scratch(little).Path()) == text);
}

TEST(TextFileTest, ASourceBeginsAgain) {
    const Scratch file("\xEF\xBB\xBF" + std::string(70'000, 'a') + "\nb");
    hosts::TextSource source(file.Path());
    for (int round = 0; round < 2; ++round, source.Rewind()) {
        EXPECT_EQ(source.Next().size(), 70'001U);
        EXPECT_EQ(source.Next(), L"b");
        EXPECT_EQ(source.Next(), L"");
        EXPECT_EQ(source.Next(), L"");
    }
}

TEST(TextFileTest, NamesABadLineFarBehind) {
    std::string bytes;
    for (int line = 1; line < 30'000; ++line)
        bytes += "a line\n";
    const Scratch file(bytes + "Z\xFCrich\n");
    EXPECT_NE(MessageOf(file.Path()).find(L"(line 30000)"), std::wstring::npos);
}

TEST(TextFileTest, TellsWhyAFileCannotBeRead) {
    EXPECT_NE(MessageOf(L"no such file").find(L"cannot open \"no such file\""), std::wstring::npos);
    EXPECT_NE(MessageOf(std::filesystem::temp_directory_path().wstring()).find(L"is a folder"), std::wstring::npos);
}

TEST(TextFileTest, DefinitionLinesEndWithCarriageReturns) {
    for (const char* text : {"#####02\r0\r3\r1", "#####02\n0\n3\n1\n", "#####02\r\n0\r\n3\r\n1\r\n\r\n"})
        EXPECT_EQ(hosts::ReadDefinitionFile(Scratch(text).Path()), L"#####02\r0\r3\r1") << text;
    EXPECT_EQ(hosts::ReadDefinitionFile(Scratch("a\n\nb").Path()), L"a\r\rb");
}

TEST(TextFileTest, WritingReplacesTheFile) {
    const Scratch file("a longer text before");
    hosts::WriteTextFile(file.Path(), L"Z\u00FC\r1");
    EXPECT_EQ(file.Bytes(), "Z\xC3\xBC\r1");
    EXPECT_THROW(hosts::WriteTextFile(L"no such folder\\file", L"x"), HostError);
}
