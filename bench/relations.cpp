// What relation trees cost: building, renaming, importing, exporting, converting, removing, for flat and layered trees
// of growing size, side by side with the bare work that they cannot do without.
#include <array>
#include <utility>
#include <vector>

#include "bench/Measure.h"
#include "support/StandIns.h"
#include "support/Trees.h"

namespace kestrel::bench {

namespace {

using namespace kestrel::test;

enum class Shape { Flat, Layered };

constexpr std::array<int, 4> Sizes = {1'000, 10'000, 100'000, 300'000};

struct Times {
    int size = 0;
    std::size_t length = 0; // of the tree's text
    Microseconds build = 0;
    Microseconds rename = 0; // every Text and Tag
    Microseconds import = 0;
    Microseconds split = 0; // into fields, as texts
    Microseconds views = 0; // over the fields, in place
    Microseconds write = 0;
    Microseconds join = 0;
    Microseconds convert = 0;
    Microseconds remove = 0;
    Microseconds clear = 0;
};

int Branching(Shape shape, int size) {
    return shape == Shape::Flat ? size : std::max(1, static_cast<int>(std::cbrt(static_cast<double>(size))));
}

String Code(int number) { return L"C" + ToText(number); }
String Value(int number) { return L"value " + ToText(number); }

// The parent's number of each node, 0 for none: as many nodes in the first layer as each of them and each of theirs has
// below it, and what is left over spread over the second layer.
int ParentOf(int number, int branching, int size) {
    if (branching == size || number <= branching) return 0;
    if (number <= branching + branching * branching) return (number - 1) % branching + 1;
    return branching + (number - 1) % (branching * branching) + 1;
}

String TextOf(Shape shape, int size) {
    const int branching = Branching(shape, size);
    String text = ToText(size);
    for (int number = 1; number <= size; ++number) {
        const int parent = ParentOf(number, branching, size);
        text += L';' + (parent == 0 ? String() : ToText(parent)) + L',' + ToText(number) + L',' + Code(number) + L',' +
                Value(number);
    }
    return text;
}

void Build(cNodes& tree, Shape shape, int size) {
    const int branching = Branching(shape, size);
    for (int number = 1; number <= size; ++number) {
        const int parent = ParentOf(number, branching, size);
        if (parent == 0)
            tree.Add({}, tvwFirst, Code(number), Value(number));
        else
            tree.Add(parent, tvwChild, Code(number), Value(number));
    }
}

void RenameAll(cNodes& tree) {
    for (std::int32_t position = 1; position <= tree.Count(); ++position) {
        const auto node = tree.Node(position);
        node->SetText(L"D" + ToText(position));
        node->SetTag(L"other " + ToText(position));
    }
}

using Records = std::vector<std::vector<String>>;

// The text as the list of its records, each the list of its fields.
Records SplitIntoFields(const String& text) {
    Records records;
    Splitter splitter(text, L';');
    while (const auto record = splitter.Next()) {
        std::vector<String> fields;
        Splitter pieces(*record, L',');
        while (const auto piece = pieces.Next())
            fields.emplace_back(*piece);
        records.push_back(std::move(fields));
    }
    return records;
}

String JoinFields(const Records& records) {
    std::vector<String> texts;
    texts.reserve(records.size());
    for (const auto& fields : records)
        texts.push_back(Join(fields, L","));
    return Join(texts, L";");
}

void WalkFields(const String& text) {
    std::size_t length = 0;
    Splitter splitter(text, L';');
    while (const auto record = splitter.Next()) {
        Splitter pieces(*record, L',');
        while (const auto piece = pieces.Next())
            length += piece->size();
    }
    Use(length);
}

Times MeasureOnce(Shape shape, int size) {
    const int runs = size > 10'000 ? 1 : 5;
    const String text = TextOf(shape, size);
    const auto tree = TreeOf(text);
    const auto imported = [&text] { return TreeOf(text); };
    Times times;
    times.size = size;
    times.length = text.size();
    times.import = BestOf(
        runs, [] { return Make<cNodes>(); }, [&text](auto& target) { target->ImportNodes(text); });
    times.build = BestOf(
        runs, [] { return Make<cNodes>(); }, [&](auto& target) { Build(*target, shape, size); });
    times.rename = BestOf(runs, imported, [](auto& target) { RenameAll(*target); });
    times.split = BestOf(runs, [&text] { Use(SplitIntoFields(text)); });
    times.join = BestOf(
        runs, [&text] { return SplitIntoFields(text); }, [](const auto& records) { Use(JoinFields(records)); });
    times.views = BestOf(runs, [&text] { WalkFields(text); });
    times.write = BestOf(runs, [&tree] { Use(tree->ExportNodes()); });
    times.convert = BestOf(runs, [&] {
        String value = Code(Branching(shape, size));
        Use(tree->Conversion(csCodeToValue, value));
    });
    times.remove = BestOf(runs, imported, [](auto& target) { target->Remove(target->Count() / 2); });
    times.clear = BestOf(runs, imported, [](auto& target) { target->Cls(); });
    return times;
}

void KeepBest(Times& best, const Times& times) {
    for (const auto step : {&Times::build, &Times::rename, &Times::import, &Times::split, &Times::views, &Times::write,
                            &Times::join, &Times::convert, &Times::remove, &Times::clear})
        best.*step = best.size == 0 ? times.*step : std::min(best.*step, times.*step);
    best.size = times.size;
    best.length = times.length;
}

// The sizes in turn, round by round: a machine that is slower for a while is so for all of them.
std::array<Times, Sizes.size()> Measure(Shape shape) {
    constexpr int rounds = 6;
    std::array<Times, Sizes.size()> times;
    for (int round = 0; round < rounds; ++round)
        for (std::size_t i = 0; i < Sizes.size(); ++i)
            KeepBest(times[i], MeasureOnce(shape, Sizes[i]));
    return times;
}

void Print(const Times& times) {
    const auto perNode = [&times](Microseconds time) { return time * 1000 / times.size; };
    std::printf("%8d", times.size);
    for (const auto time : {times.build, times.rename, times.import, times.split, times.views, times.write, times.join,
                            times.convert, times.remove, times.clear})
        std::printf("%9.1f", perNode(time));
    std::printf("\n");
}

// Import and export work through a text, whose records grow with the numbers in them: their growth is measured against
// its length.
void Judge(const char* name, const std::array<Times, Sizes.size()>& times, Verdicts& verdicts) {
    const Times& small = times[0];
    const Times& middle = times[2];
    const Times& large = times[3];
    const auto byText = [&](Microseconds Times::*step) {
        return Exponent(static_cast<double>(small.length), small.*step, static_cast<double>(large.length), large.*step);
    };
    const auto byNodes = [&](Microseconds Times::*step) {
        return Exponent(small.size, small.*step, large.size, large.*step);
    };
    const auto growth = [&](Microseconds Times::*step) {
        return (middle.*step / middle.size) / (small.*step / small.size);
    };
    std::printf("%s, growth exponent from %d to %d nodes, with the text: import %.2f, split %.2f, export %.2f, join "
                "%.2f; with the nodes: convert %.2f, remove %.2f, clear %.2f\n",
                name, small.size, large.size, byText(&Times::import), byText(&Times::split), byText(&Times::write),
                byText(&Times::join), byNodes(&Times::convert), byNodes(&Times::remove), byNodes(&Times::clear));
    const auto of = [name](const std::string& what) { return what + " (" + name + " tree)"; };
    verdicts.AtMost(of("Add, per node of 100,000 to one of 1,000"), growth(&Times::build), 1.5);
    verdicts.AtMost(of("setting Text and Tag, per node of 100,000 to one of 1,000"), growth(&Times::rename), 1.5);
    verdicts.AtMost(of("import, growth exponent"), byText(&Times::import), 1.05);
    verdicts.AtMost(of("export, growth exponent"), byText(&Times::write), 1.05);
    for (const auto& row : times) {
        const std::string ofSize = " (" + std::string(name) + " tree of " + std::to_string(row.size) + ")";
        verdicts.AtMost("import to splitting the same text into its fields" + ofSize, row.import / row.split, 1.5);
        verdicts.AtMost("export to joining the same text of its fields" + ofSize, row.write / row.join, 1.5);
    }
}

void MeasureShape(Shape shape, const char* name, Verdicts& verdicts) {
    std::printf("\n%s trees, nanoseconds per node of the tree:\n", name);
    std::printf("%8s%9s%9s%9s%9s%9s%9s%9s%9s%9s%9s\n", "nodes", "build", "rename", "import", "split", "walk", "export",
                "join", "convert", "remove", "clear");
    const auto times = Measure(shape);
    for (const auto& row : times)
        Print(row);
    Judge(name, times, verdicts);
}

// A tree's first Conversion walks all siblings; beside a loop over the same texts with the same comparison.
void CompareFirstConversion(Verdicts& verdicts) {
    const String text = TextOf(Shape::Flat, 10'000);
    const String wanted = Code(10'000);
    std::vector<std::pair<String, String>> pairs;
    for (const auto& node : TreeOf(text)->Snapshot())
        pairs.emplace_back(node->Text(), node->Tag());
    const auto conversion = BestOf(
        50, [&] { return TreeOf(text); },
        [&](auto& tree) {
            String value = wanted;
            Use(tree->Conversion(csCodeToValue, value));
        });
    const auto loop = BestOf(200, [&] {
        const auto& port = TheText();
        const auto found = std::find_if(pairs.begin(), pairs.end(),
                                        [&](const auto& pair) { return port.SameText(pair.first, wanted); });
        Use(found->second);
    });
    std::printf("\nfirst conversion over 10000 siblings: %.1f us, bare loop of the same comparisons: %.1f us\n",
                conversion, loop);
    verdicts.AtMost("first conversion to the bare loop", conversion / loop, 2);
}

// The last of so many siblings looked up so often, by look.
Microseconds Looks(int siblings, int looks) {
    const String text = TextOf(Shape::Flat, siblings);
    return BestOf(
               20, [&] { return TreeOf(text); },
               [&](auto& tree) {
                   for (int look = 0; look < looks; ++look) {
                       String value = Code(siblings);
                       Use(tree->Conversion(csCodeToValue, value));
                   }
               }) /
           looks;
}

void CompareConversions(Verdicts& verdicts) {
    constexpr int many = 100'000;
    const auto few = Looks(10, many);
    const auto all = Looks(10'000, many);
    std::printf("\nconversions, microseconds per look: %.3f among 10 siblings, %.3f among 10000; of the first 21 "
                "looks %.1f\n",
                few, all, Looks(10'000, 21));
    verdicts.AtMost("conversion among 10,000 siblings to one among 10", all / few, 3);
}

int Run() {
    const test::StandIns standIns;
    Verdicts verdicts;
    std::printf("build: by Add; rename: Text and Tag of every node\nsplit: the text into records and those into texts; "
                "walk: over the same fields in "
                "place, without keeping "
                "them\nremove: one Remove in the middle of the list; clear: Cls\n");
    MeasureShape(Shape::Flat, "flat", verdicts);
    MeasureShape(Shape::Layered, "3-layer", verdicts);
    CompareFirstConversion(verdicts);
    CompareConversions(verdicts);
    return verdicts.ExitCode();
}

} // namespace

} // namespace kestrel::bench

int main() { return kestrel::bench::RunBenchmark(kestrel::bench::Run); }
