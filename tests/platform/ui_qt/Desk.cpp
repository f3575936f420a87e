#include "tests/platform/ui_qt/Desk.h"

#include "platform/ui/qt/QtText.h"
#include "platform/ui/qt/WidgetPeer.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/ui/Canvas.h"
#include "shell/contracts/ui/SkinLabel.h"
#include "shell/contracts/ui/SkinManager.h"
#include "shell/contracts/ui/SkinPanel.h"
#include "shell/contracts/ui/SkinPhoto.h"
#include "shell/contracts/ui/SkinSlider.h"
#include "shell/contracts/ui/SkinSplitter.h"

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QMenu>
#include <QTimer>
#include <QTreeView>

namespace kivo::ui::qt {

namespace {

constexpr COLORREF kGroupText = 0x573F34;
constexpr COLORREF kTrackText = 0xA38378;
constexpr COLORREF kSelectedRow = 0xFEEEDF;
constexpr COLORREF kPlayingRow = 0xFFF0B6;

String FromUtf8(const char* text)
{
    return common::utf8_to_CString(text);
}

CSkinPanel* AddPanel(CSkinObject& parent, const char16_t* id)
{
    auto* panel = new CSkinPanel;
    panel->SetObjectID(id);
    parent.RegisterControl(panel);
    const String key = String(u"KIVO Plugins TuneHiveWindow ") + id;
    panel->BuildFromXML(CSkinManager::GetInstance()->GetBuildNode(key));
    return panel;
}

} // namespace

Desk::Desk(const DeskLook& look)
{
    SetBeyond(true);
    common::SetAppPath(FromUtf8(KIVO_APP_FOLDER));
    common::CMutiLanSupport::GetInstance()->AddTable(
        FromUtf8(KIVO_DATA_FOLDER "lang/en/stringid.ini"));
    CSkinManager::GetInstance()->Clear();
    CSkinManager::GetInstance()->IncludeSkinFile(FromUtf8(KIVO_PLUGIN_FOLDER "skin.xml"));
    CSkinManager::GetInstance()->IncludeSkinBuildFile(FromUtf8(KIVO_PLUGIN_FOLDER "build.xml"));
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(static_cast<int>(13 * look.fontScale));
    QApplication::setFont(font);
    DesktopOptions options;
    options.dark = look.dark;
    options.highContrast = look.highContrast;
    options.rightToLeft = look.rightToLeft;
    options.nativePickers = false;
    desktop_ = std::make_unique<QtDesktop>(options);
}

Desk::~Desk()
{
    desktop_.reset();
    CSkinManager::GetInstance()->Clear();
    CSkinManager::GetInstance()->SetRightToLeft(false);
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    SetBeyond(false);
}

DeskRow::DeskRow(CSkinTree& tree, const String& id, bool group)
    : CSkinTreeItem(&tree, id)
    , text(id)
{
    SetGroup(group);
}

void DeskRow::BuildRow()
{
    Clear();
    const LOGFONT font = GetDefaultLOGFONT();
    if (IsGroup()) {
        const bool playing = GetID() == u"playing";
        const PictureRect fold =
            IsExpanded() ? PictureRect{16, 0, 16, 16} : PictureRect{0, 0, 16, 16};
        AddPhoto(0,
                 u"icon",
                 u"Icon",
                 playing ? String(IsExpanded() ? u"listening_unfold.png" : u"listening_fold.png")
                         : String(u"public\\group_fold.png"),
                 {},
                 playing ? PictureRect{} : fold,
                 0);
        AddLabel(1, u"text", u"Text", text, text, font, kGroupText, kGroupText, 0);
        return;
    }
    int place = 0;
    if (isPlaying)
        AddPhoto(place++, u"icon", u"Icon", u"playing.png", {}, {}, 0);
    if (!isGone)
        AddLabel(place++, u"length", u"Length", length, length, font, kTrackText, kTrackText, 0);
    AddLabel(place, u"text", u"Text", text, u"/music/" + text, font, kTrackText, kTrackText, 0);
}

void DeskRow::ReposControls()
{
    CSkinTreeItem::ReposControls();
    if (IsGroup())
        return;
    SetMargins(isPlaying ? 2 : 14, 0, 15, 0);
    if (CSkinCell* cell = GetObjectW(u"length")) {
        cell->SetAnchorStyle(anchor::kRight);
        cell->SetBounds(0, 0, 42, 10);
        cell->SetAlignmentHor(align::kTrailing);
    }
    if (CSkinCell* cell = GetObjectW(u"icon")) {
        cell->SetAnchorStyle(anchor::kLeft);
        cell->SetBounds(0, 0, 12, 10);
    }
    if (CSkinCell* cell = GetObjectW(u"text"))
        cell->SetAnchorStyle(anchor::kFill);
}

void DeskRow::RenderSelf(ICanvas& canvas)
{
    if (IsSelected())
        canvas.FillRect(GetBoundsRect(), kSelectedRow);
    else if (isPlaying)
        canvas.FillRect(GetBoundsRect(), kPlayingRow);
}

IMenu* DeskRow::GetRowMenu(const MenuDelegate& delegate)
{
    auto* menu = new IMenu;
    menu->AddMenu(u"Play " + text, 1, 0, 0, delegate, nullptr, {});
    return menu;
}

void DeskRow::OnRowCommand(IMenu* entry)
{
    static_cast<DeskTree*>(GetList())->log.push_back(GetID() + u" command " +
                                                     common::ToText(entry->GetID()));
}

void DeskRow::OnExpandChanged(CSkinTree* /*tree*/, int /*row*/, bool /*expanded*/)
{
    BuildRow();
}

int DeskRow::OnListEvent(CSkinList* list, int context, int event, const String& eventText)
{
    auto* tree = static_cast<DeskTree*>(list);
    String line = GetID() + u" " + common::ToText(event);
    if (!eventText.empty())
        line += u" " + eventText;
    for (const String& path : tree->GetDroppedFiles())
        line += u" " + path;
    tree->log.push_back(line);
    return event == static_cast<int>(RowEvent::DragOver)
               ? CSkinTreeItem::OnListEvent(list, context, event, eventText)
               : 0;
}

bool DeskRow::OnEditEnd(const String& before, const String& after)
{
    static_cast<DeskTree*>(GetList())->log.push_back(before + u" > " + after);
    text = after;
    BuildRow();
    return true;
}

void DeskRow::OnRenameKey()
{
    GetList()->Edit(GetList()->LocateRow(this), u"text", 1);
}

int DeskTree::GetDragText(String& text)
{
    text = u"KIVO2006TREEDRAG:playing#a";
    return refusesDrags ? 0 : 1;
}

IMenu* DeskTree::GetMultiSelectMenu()
{
    auto* menu = new IMenu;
    menu->AddMenu(u"Several", 2, 0, 0, GetMenuDelegate(), nullptr, {});
    return menu;
}

IMenu* DeskTree::GetBlankAreaMenu()
{
    auto* menu = new IMenu;
    menu->AddMenu(u"Blank", 3, 0, 0, GetMenuDelegate(), nullptr, {});
    return menu;
}

DeskRow* DeskTree::AddGroup(const String& id)
{
    auto* row = new DeskRow(*this, id, /*group=*/true);
    GetRoot()->AddTreeNode(row);
    row->BuildRow();
    return row;
}

DeskRow* DeskTree::AddTrack(DeskRow& group, const String& id)
{
    auto* row = new DeskRow(*group.GetTree(), id, /*group=*/false);
    group.AddTreeNode(row);
    row->BuildRow();
    return row;
}

std::vector<String> DeskTree::GetShown() const
{
    std::vector<String> shown;
    const auto* view = static_cast<QTreeView*>(WidgetOf(this));
    for (QModelIndex index = view->model()->index(0, 0); index.isValid();
         index = view->indexBelow(index))
        shown.push_back(FromQt(index.data().toString()));
    return shown;
}

void FillWithSamples(DeskTree& tree)
{
    struct Sample {
        const char16_t* text;
        const char16_t* length;
        bool playing;
        bool selected;
        bool gone;
    };
    static constexpr Sample kSamples[] = {
        {u"The Long Way Home - Ada Whitfield",                                                       u"3:42",  false, false, false},
        {u"春江花月夜 — 古筝与箫合奏，1962 年现场录音完整修复版",            u"9:17",  false, false, false},
        {u"Времена года, соч. 37а: Июнь. Баркарола",                     u"4:56",  true,  false, false},
        {u"لما بدا يتثنى، تسجيل قديم من إذاعة حلب مع الفرقة", u"6:03",  false, false, false},
        {u"field-recording-07.flac",                                                                 u"62:05", false, false, false},
        {u"Blue Lanterns - Kite & Harbour",                                                          u"2:58",  false, true,  false},
        {u"Old Radio Play, Episode 3.mp3",                                                           u"",      false, false, true },
        {u"Nocturne in E-flat - Op. 9 No. 2",                                                        u"4:31",  false, false, false},
    };
    tree.BeginUpdate();
    DeskRow* playing = tree.AddGroup(u"playing");
    playing->text = u"Playing";
    for (const Sample& sample : kSamples) {
        DeskRow* row = DeskTree::AddTrack(*playing, sample.text);
        row->length = sample.length;
        row->isPlaying = sample.playing;
        row->isGone = sample.gone;
        row->BuildRow();
        row->SetSelected(sample.selected ? 1 : 0);
    }
    playing->BuildRow();
    playing->Expand(&tree, 0, /*expanded=*/true);
    for (const char16_t* name : {u"My media", u"For the train", u"Sunday morning", u"Hot"})
        tree.AddGroup(name);
    tree.EndUpdate(1);
}

DeskPage::DeskPage(int width, int height)
    : form_(std::make_unique<CSkinForm>())
{
    form_->SetObjectID(u"MainForm");
    form_->SetBounds(0, 0, width, height);
    form_->Create(wndstyle::kPopup, u"Main", u"kivo", Rect{}, nullptr, 0);
    AddPanel(*form_, u"PlayerPanel");
    auto* bar = new CSkinSlider;
    bar->SetObjectID(u"ProcessBar");
    Find(u"ControlPanel")->RegisterControl(bar);
    bar->SetSkinName(u"tunehive_player");
    bar->SetAnchorStyle(anchor::kTop);
    bar->SetBounds(0, 0, 10, 6);
    bar->SetAccessibleName(u"Position");
    bar->Create(form_.get());
    bar->SetRange(0, 300);
    bar->SetPosition(116);
    Find(u"PlayBtn")->SetVisible(0);
    Find(u"StatePanel")->SetVisible(0);
    AddPanel(*form_, u"ToolPanel");
    Find(u"SetBtn")->SetVisible(0);
    auto* splitter = new CSkinSplitter(0, 0);
    splitter->SetObjectID(u"SplitterCtrl");
    form_->RegisterControl(splitter);
    splitter->Create(form_.get(), u"KIVO Plugins TuneHiveWindow SplitterCtrl");
    splitter->SetFixedPane(1);
    CSkinPanel* list = AddPanel(*splitter->GetPane(0), u"PlayListPanel");
    tree_ = new DeskTree;
    tree_->SetObjectID(u"PlayList");
    tree_->SetSkinName(u"tunehive");
    tree_->SetAccessibleName(u"Groups and tracks");
    list->RegisterControl(tree_);
    tree_->SetAnchorStyle(anchor::kFill);
    tree_->CSkinList::Create(form_.get());
    tree_->AppendTree(new DeskRow(*tree_, u"", /*group=*/true), /*show=*/false);
    tree_->SetCanDrag(1);
    tree_->SetCanDrop(1);
    AddPanel(*splitter->GetPane(1), u"LyricPanel");
    Find(u"LyricCaption")->SetText(u"TuneHive");
    static_cast<CSkinPhoto*>(Find(u"PhotoDefault"))->SetPhotoFile(u"player.png", {}, 0);
    OpenPane(false);
    form_->ShowWindow(5);
    form_->RePositionSubControls();
}

DeskPage::~DeskPage() = default;

void DeskPage::OpenPane(bool open)
{
    auto* splitter = static_cast<CSkinSplitter*>(Find(u"SplitterCtrl"));
    splitter->SetPaneVisible(1, open ? 1 : 0);
    splitter->SetBarVisible(open ? 1 : 0);
    form_->RePositionSubControls();
}

QWidget* DeskPage::GetWindow() const
{
    return WidgetOf(form_.get());
}

QAbstractButton* DeskPage::GetButton(const String& id) const
{
    return qobject_cast<QAbstractButton*>(WidgetOf(Find(id)));
}

void Settle()
{
    for (int round = 0; round < 20; ++round) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

void InMenu(const std::function<void(QMenu&)>& act)
{
    QTimer::singleShot(0, qApp, [act] {
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        act(*menu);
        if (QWidget* rest = QApplication::activePopupWidget())
            rest->close();
    });
}

QImage Grab(QWidget& widget, const std::string& name)
{
    Settle();
    QImage image = widget.grab().toImage();
    const QString folder = qEnvironmentVariable("KIVO_PICTURES");
    if (!folder.isEmpty())
        image.save(QDir(folder).filePath(QString::fromStdString(name) + QLatin1String(".png")));
    return image;
}

} // namespace kivo::ui::qt
