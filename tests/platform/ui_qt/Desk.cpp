#include "tests/platform/ui_qt/Desk.h"

#include "platform/ui/qt/QtText.h"
#include "platform/ui/qt/WidgetPeer.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/ui/SkinLabel.h"
#include "shell/contracts/ui/SkinManager.h"
#include "shell/contracts/ui/SkinPanel.h"
#include "shell/contracts/ui/SkinPhoto.h"
#include "shell/contracts/ui/SkinSlider.h"
#include "shell/contracts/ui/SkinSplitter.h"

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QApplication>
#include <QMenu>
#include <QTimer>
#include <QTreeView>

namespace kivo::ui::qt {

namespace {

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

std::vector<String> ShownIn(const CSkinTree& tree)
{
    std::vector<String> shown;
    const auto* view = static_cast<QTreeView*>(WidgetOf(&tree));
    for (QModelIndex index = view->model()->index(0, 0); index.isValid();
         index = view->indexBelow(index))
        shown.push_back(FromQt(index.data().toString()));
    return shown;
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
    tree_ = new TestTree(/*creates=*/false);
    tree_->SetObjectID(u"PlayList");
    tree_->SetSkinName(u"tunehive");
    tree_->SetAccessibleName(u"Groups and tracks");
    list->RegisterControl(tree_);
    tree_->SetAnchorStyle(anchor::kFill);
    tree_->CSkinList::Create(form_.get());
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

QImage Grab(QWidget& widget)
{
    Settle();
    return widget.grab().toImage();
}

} // namespace kivo::ui::qt
