#pragma once

#include "shell/contracts/ui/SkinTree.h"

#include <functional>
#include <string>
#include <vector>

namespace kivo::ui {

struct HeardEvent {
    String row;
    int event = 0;
    String text;
    friend bool operator==(const HeardEvent&, const HeardEvent&) = default;
};

class TestTree;

// A row that says what it hears to its tree.
class TestRow : public CSkinTreeItem {
public:
    TestRow(TestTree* tree, const String& id, bool isGroup = false);

    void BuildRow() override
    {
        Clear();
        AddLabel(0, u"text", u"Text", GetID(), u"", GetDefaultLOGFONT(), 0xA38378, 0xA38378, 0);
    }
    int OnListEvent(CSkinList* list, int context, int event, const String& text) override;
    bool OnEditEnd(const String& oldText, const String& newText) override;
    IMenu* GetRowMenu(const MenuDelegate& delegate) override;
    void OnRowCommand(IMenu* entry) override;
    void OnRenameKey() override;
    void OnExpandChanged(CSkinTree* tree, int row, bool expanded) override;
    int CompareFunc(CSkinTreeItem* a, CSkinTreeItem* b) override
    {
        return a->GetID().compare(b->GetID());
    }
    int CanBeSelected() override { return 1; }
    int CanBeEdited() override { return 1; }
};

class TestTree : public CSkinTree {
public:
    TestTree()
    {
        auto* root = new TestRow(this, u"");
        AppendTree(root, /*show=*/false);
        Create(nullptr);
    }

    // Groups as "name:row,row": "A:a,b" is the group A with the rows a and b, expanded.
    TestRow* AddGroup(const String& id, const std::vector<String>& rows, bool expanded = true)
    {
        auto* group = new TestRow(this, id, /*isGroup=*/true);
        GetRoot()->AddTreeNode(group);
        group->BuildRow();
        for (const String& row : rows)
            AddRow(*group, row);
        group->Expand(this, LocateRow(group), expanded);
        return group;
    }

    TestRow* AddRow(TestRow& group, const String& id)
    {
        auto* row = new TestRow(this, id);
        group.AddTreeNode(row);
        row->BuildRow();
        return row;
    }

    [[nodiscard]] TestRow* At(int place) const { return static_cast<TestRow*>(GetRowAt(place)); }

    [[nodiscard]] std::vector<String> Shown() const
    {
        CPtrArray rows;
        GetAllSubControls(rows);
        std::vector<String> ids;
        for (std::size_t index = 1; index < rows.size(); ++index)
            ids.push_back(static_cast<TestRow*>(rows[index])->GetID());
        return ids;
    }

    [[nodiscard]] std::vector<String> Selected() const
    {
        std::vector<String> ids;
        for (const CSkinListItem* row : GetAllSelectedItem())
            ids.push_back(row->GetID());
        return ids;
    }

    IMenu* GetMultiSelectMenu() override { return MenuOf(2); }
    IMenu* GetBlankAreaMenu() override { return MenuOf(3); }
    IMenu* MenuOf(int id)
    {
        auto* menu = new IMenu;
        menu->AddMenu(u"entry", id, 0, 0, GetMenuDelegate(), nullptr, u"");
        return menu;
    }
    int GetDragText(String& text) override
    {
        text = u"dragged";
        return 1;
    }
    void OnDragFinished() override { heard.push_back({u"", -1, u"drag finished"}); }

    std::vector<HeardEvent> heard;
    std::function<void(TestRow&, int)> onEvent; // In place of the row's own answer.
};

inline TestRow::TestRow(TestTree* tree, const String& id, bool isGroup)
    : CSkinTreeItem(tree, id)
{
    SetGroup(isGroup);
}

inline int TestRow::OnListEvent(CSkinList* list, int context, int event, const String& text)
{
    auto& tree = static_cast<TestTree&>(*list);
    tree.heard.push_back({GetID(), event, text});
    if (!tree.onEvent)
        return CSkinTreeItem::OnListEvent(list, context, event, text);
    tree.onEvent(*this, event);
    return 0;
}

inline bool TestRow::OnEditEnd(const String& oldText, const String& newText)
{
    static_cast<TestTree*>(GetTree())->heard.push_back({GetID(), -2, oldText + u">" + newText});
    return true;
}

inline IMenu* TestRow::GetRowMenu(const MenuDelegate& delegate)
{
    auto* menu = new IMenu;
    menu->AddMenu(u"entry", 1, 0, 0, delegate, nullptr, u"");
    return menu;
}

inline void TestRow::OnRowCommand(IMenu* entry)
{
    static_cast<TestTree*>(GetTree())->heard.push_back({GetID(), 1000 + entry->GetID(), u""});
}

inline void TestRow::OnRenameKey()
{
    static_cast<TestTree*>(GetTree())->heard.push_back({GetID(), -3, u"rename"});
}

inline void TestRow::OnExpandChanged(CSkinTree* tree, int /*row*/, bool expanded)
{
    static_cast<TestTree*>(tree)->heard.push_back({GetID(), -4, expanded ? u"open" : u"folded"});
}

} // namespace kivo::ui
