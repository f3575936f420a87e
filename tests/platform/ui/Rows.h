#pragma once

#include "shell/contracts/common/Text.h"
#include "shell/contracts/ui/SkinTree.h"

#include <functional>
#include <vector>

// A tree of plain rows that writes down what it is told, with or without a window.
namespace kivo::ui {

class TestTree;

// A group or a track; its one cell, "text", shows its id.
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
    void OnRenameKey() override { GetList()->Edit(GetList()->LocateRow(this), u"text", 1); }
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
    // `creates`: at once, without a form.
    explicit TestTree(bool creates = true)
    {
        AppendTree(new TestRow(this, u"", /*isGroup=*/true), /*show=*/false);
        if (creates)
            Create(nullptr);
    }

    TestRow* AddGroup(const String& id, const std::vector<String>& rows = {}, bool expanded = true)
    {
        auto* group = new TestRow(this, id, /*isGroup=*/true);
        GetRoot()->AddTreeNode(group);
        group->BuildRow();
        for (const String& row : rows)
            AddRow(*group, row);
        group->Expand(this, LocateRow(group), expanded);
        return group;
    }

    TestRow* AddRow(CSkinTreeItem& group, const String& id)
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

    IMenu* GetMultiSelectMenu() override { return MenuOf(u"Several", 2, GetMenuDelegate()); }
    IMenu* GetBlankAreaMenu() override { return MenuOf(u"Blank", 3, GetMenuDelegate()); }
    static IMenu* MenuOf(const String& text, int id, const MenuDelegate& delegate)
    {
        auto* menu = new IMenu;
        menu->AddMenu(text, id, 0, 0, delegate, nullptr, u"");
        return menu;
    }
    int GetDragText(String& text) override
    {
        text = u"KIVO2006TREEDRAG:playing#a";
        return refusesDrags ? 0 : 1;
    }
    int OnBlankDragOver() override { return 1; }
    void OnBlankDrop(const String& text) override { log.push_back(u"blank " + text); }
    void OnDragFinished() override { log.emplace_back(u"drag end"); }

    std::vector<String> log;
    bool refusesDrags = false;                  // As if what is selected could not be dragged.
    int folds = 0;                              // Up or down.
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
    String line = GetID() + u" " + common::ToText(event);
    if (!text.empty())
        line += u" " + text;
    for (const String& path : tree.GetDroppedFiles())
        line += u" " + path;
    tree.log.push_back(line);
    if (!tree.onEvent)
        return CSkinTreeItem::OnListEvent(list, context, event, text);
    tree.onEvent(*this, event);
    return 0;
}

inline bool TestRow::OnEditEnd(const String& oldText, const String& newText)
{
    static_cast<TestTree*>(GetTree())->log.push_back(oldText + u" > " + newText);
    return true;
}

inline IMenu* TestRow::GetRowMenu(const MenuDelegate& delegate)
{
    return TestTree::MenuOf(u"Play " + GetID(), 1, delegate);
}

inline void TestRow::OnRowCommand(IMenu* entry)
{
    static_cast<TestTree*>(GetTree())->log.push_back(GetID() + u" command " +
                                                     common::ToText(entry->GetID()));
}

inline void TestRow::OnExpandChanged(CSkinTree* tree, int /*row*/, bool /*expanded*/)
{
    ++static_cast<TestTree*>(tree)->folds;
}

} // namespace kivo::ui
