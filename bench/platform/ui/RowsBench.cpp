#include "bench/support/Figures.h"
#include "shell/contracts/ui/SkinTree.h"

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <memory>
#include <string>

namespace kivo::ui {
namespace {

// A row as a track's: a title of 30 units and a length.
class Row : public CSkinTreeItem {
public:
    Row(CSkinTree* tree, const String& id)
        : CSkinTreeItem(tree, id)
    {
    }
    void BuildRow() override
    {
        Clear();
        AddLabel(0, u"length", u"Length", u"3:25", u"3:25", {}, 0xA38378, 0xA38378, 0);
        AddLabel(
            1, u"text", u"Text", u"A title and its artist's name.", u"", {}, 0xA38378, 0xA38378, 0);
    }
    IMenu* GetRowMenu(const MenuDelegate& /*delegate*/) override { return nullptr; }
    void OnRowCommand(IMenu* /*entry*/) override {}
    void OnExpandChanged(CSkinTree* /*tree*/, int /*row*/, bool /*expanded*/) override {}
    int CanBeSelected() override { return 1; }
    int CanBeEdited() override { return 1; }
};

// A tree with one open group of rows, as a category fills itself.
struct FilledTree {
    explicit FilledTree(int count)
    {
        auto* root = new Row(&tree, u"");
        tree.AppendTree(root, /*show=*/false);
        tree.Create(nullptr);
        group = new Row(&tree, u"playing");
        group->SetGroup(/*isGroup=*/true);
        root->AddTreeNode(group);
        group->Expand(&tree, 0, /*expanded=*/true);
        tree.BeginUpdate();
        for (int index = 0; index < count; ++index) {
            auto* row = new Row(&tree, u"abc");
            group->AddTreeNode(row);
            row->BuildRow();
        }
        tree.EndUpdate(1);
    }

    CSkinTree tree;
    Row* group = nullptr;
};

double BytesInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

void BM_MakeRows(benchmark::State& state)
{
    const auto count = static_cast<int>(state.range(0));
    double bytes = 0;
    for ([[maybe_unused]] const auto _ : state) {
        const double before = BytesInUse();
        auto filled = std::make_unique<FilledTree>(count);
        state.PauseTiming();
        bytes = BytesInUse() - before;
        filled.reset();
        state.ResumeTiming();
    }
    state.counters["bytes_per_row"] = bytes / count;
}
BENCHMARK(BM_MakeRows)
    ->Arg(1000)
    ->Arg(10000)
    ->Arg(100000)
    ->Arg(300000)
    ->Unit(benchmark::kMillisecond);

// The baseline: the bare texts of as many rows.
void BM_MakeTexts(benchmark::State& state)
{
    const auto count = static_cast<std::size_t>(state.range(0));
    for ([[maybe_unused]] const auto _ : state) {
        std::vector<std::pair<String, String>> texts(count);
        for (auto& [length, title] : texts) {
            length = u"3:25";
            title = u"A title and its artist's name.";
        }
        benchmark::DoNotOptimize(texts.data());
    }
}
BENCHMARK(BM_MakeTexts)->Arg(100000)->Unit(benchmark::kMillisecond);

// Every fifth row goes: in one pass, or one by one inside one bracket.
template <bool kOnePass>
void BM_RemoveFifth(benchmark::State& state)
{
    for ([[maybe_unused]] const auto _ : state) {
        state.PauseTiming();
        auto filled = std::make_unique<FilledTree>(static_cast<int>(state.range(0)));
        std::vector<CSkinTreeItem*> going;
        for (int index = 0; index < filled->group->GetChildCount(); index += 5)
            going.push_back(filled->group->GetChild(index));
        state.ResumeTiming();
        filled->tree.BeginUpdate();
        if constexpr (kOnePass) {
            filled->tree.RemoveTreeItems(going);
        } else {
            for (CSkinTreeItem* row : going)
                filled->tree.RemoveTreeItem(row);
        }
        filled->tree.EndUpdate(1);
        state.PauseTiming();
        filled.reset();
        state.ResumeTiming();
    }
}
BENCHMARK_TEMPLATE(BM_RemoveFifth, true)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK_TEMPLATE(BM_RemoveFifth, false)->Arg(100000)->Unit(benchmark::kMillisecond);

// As a category clears itself: each row is located, taken out, and freed.
void BM_ClearRows(benchmark::State& state)
{
    for ([[maybe_unused]] const auto _ : state) {
        state.PauseTiming();
        auto filled = std::make_unique<FilledTree>(static_cast<int>(state.range(0)));
        state.ResumeTiming();
        filled->tree.BeginUpdate();
        for (void* pointer : filled->group->GetChildren()) {
            auto* row = static_cast<Row*>(pointer);
            filled->tree.RemoveItem(filled->tree.LocateRow(row));
            row->Release();
        }
        filled->group->GetChildren().clear();
        filled->tree.EndUpdate(1);
        state.PauseTiming();
        filled.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(BM_ClearRows)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

void BM_SelectAllAndAsk(benchmark::State& state)
{
    FilledTree filled(static_cast<int>(state.range(0)));
    filled.tree.SetCurrentRow(filled.group->GetChild(0));
    for ([[maybe_unused]] const auto _ : state) {
        filled.tree.SelectAll();
        benchmark::DoNotOptimize(filled.tree.GetAllSelectedItem());
        filled.tree.ClearAllSelected();
    }
}
BENCHMARK(BM_SelectAllAndAsk)->Arg(100000)->Unit(benchmark::kMillisecond);

void BM_LayOutRow(benchmark::State& state)
{
    FilledTree filled(/*count=*/50);
    int index = 0;
    for ([[maybe_unused]] const auto _ : state)
        benchmark::DoNotOptimize(
            filled.group->GetChild(index++ % 50)->LayOutForView({300, 28}).data());
}
BENCHMARK(BM_LayOutRow);

} // namespace
} // namespace kivo::ui

int main(int argc, char** argv)
{
    return kivo::bench::RunWithFigures(argc, argv);
}
