// Collections of names, as hosts use them.
#include "automation/support/Late.h"

namespace kestrel::test {

namespace {

class NamesTest : public ComTest {
  protected:
    String Add(StringView text) {
        Bstr result;
        Must(names->Add(Arg(text), result.Out()));
        return result.Text();
    }
    Failure FailureOfItem(const VARIANT& index) {
        Bstr text;
        return FailureOf(names->get_Item(index, text.Out()));
    }
    Failure Import(StringView text) {
        Bstr definitions(text);
        Failure failure = FailureOf(names->ImportNames(definitions.Out()));
        EXPECT_EQ(definitions.Text(), text) << "only read";
        return failure;
    }
    [[nodiscard]] std::vector<String> All() const {
        std::vector<String> all;
        for (LONG i = 1; i <= Plain(names, &_Names::get_Count); ++i) {
            Bstr text;
            Must(names->get_Item(Number(i), text.Out()));
            all.push_back(text.Text());
        }
        return all;
    }

    const ComPtr<_Names> names = NewNames();
};

} // namespace

TEST_F(NamesTest, Add) {
    EXPECT_EQ(Add(L" a "), L" a ") << "kept as given";
    EXPECT_EQ(Add(L""), L"");
    Bstr result;
    EXPECT_FAILS(names->Add(Arg(L" a "), result.Out()), DuplicateKey);
    EXPECT_FAILS(names->Add(nullptr, result.Out()), DuplicateKey) << "no text is an empty one";
    EXPECT_FAILS(names->Add(Arg(L"b"), nullptr), Bare(E_POINTER));
    EXPECT_EQ(All(), (std::vector<String>{L" a ", L""}));
    EXPECT_TRUE(FAILED(names->Add(Arg(L" a "), result.Out())));
    EXPECT_EQ(TakenSource(), L"Kestrel.Names");
}

TEST_F(NamesTest, Item) {
    Add(L"a");
    EXPECT_EQ(FailureOfItem(Arg(L"a")), Failure{});
    EXPECT_EQ(FailureOfItem(Arg(L"A")), InvalidCall);
    EXPECT_EQ(FailureOfItem(Number(1)), Failure{});
    for (const LONG outside : {0L, -1L, 2L})
        EXPECT_EQ(FailureOfItem(Number(outside)), OutOfRange);
    EXPECT_EQ(FailureOfItem(Null()), InvalidCall);
}

TEST_F(NamesTest, Remove) {
    Add(L"a");
    Add(L"b");
    EXPECT_FAILS(names->Remove(Arg(L"c")), InvalidCall);
    EXPECT_DONE(names->Remove(Arg(L"a")));
    EXPECT_FAILS(names->Remove(Number(2)), OutOfRange);
    EXPECT_DONE(names->Remove(Number(1)));
    EXPECT_EQ(All(), (std::vector<String>{}));
}

TEST_F(NamesTest, ImportNames) {
    Add(L"old");
    EXPECT_EQ(Import(L"A;B;;A"), Failure{});
    EXPECT_EQ(All(), (std::vector<String>{L"A", L"B", L"", L"A"}));
    EXPECT_EQ(FailureOfItem(Arg(L"A")), InvalidCall) << "imported names carry no key";
    EXPECT_EQ(Add(L"A"), L"A");
    EXPECT_EQ(Import(L""), Failure{});
    EXPECT_EQ(All(), (std::vector<String>{}));
    EXPECT_FAILS(names->ImportNames(nullptr), Bare(E_POINTER));
}

TEST_F(NamesTest, ImportOfAMillionCharactersAndOfNuls) {
    EXPECT_EQ(Import(String(1'000'000, L';')), Failure{});
    EXPECT_EQ(Plain(names, &_Names::get_Count), 1'000'001);
    const String withNul(L"a\0b;c", 5);
    EXPECT_EQ(Import(withNul), Failure{});
    EXPECT_EQ(All(), (std::vector<String>{String(L"a\0b", 3), L"c"}));
}

} // namespace kestrel::test
