#include "platform/ui/qt/Pickers.h"
#include "platform/ui/qt/Tooltip.h"
#include "platform/ui/qt/WidgetPeer.h"
#include "shell/contracts/ui/SkinCombox.h"
#include "shell/contracts/ui/SkinWndManager.h"
#include "shell/contracts/ui/SWColorEdit.h"
#include "tests/platform/ui_qt/Desk.h"

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QApplication>
#include <QMenu>
#include <QTest>
#include <QTextDocument>
#include <QTimer>

#include <functional>

namespace kivo::ui::qt {
namespace {

// The address form with its fields, as its owner builds it.
class AddressForm final : public CSkinForm {
public:
    AddressForm()
    {
        SetObjectID(u"AddURLForm");
        ListenEvent(kControlEvent, {this, &AddressForm::OnPress});
        Create(wndstyle::kPopup, u"KivoMediaAddURLForm", u"Add an address", Rect{}, nullptr, 0);
    }

    int OnBuildControlAfter() override
    {
        auto* combox = static_cast<CSkinCombox*>(FindControlRecusive(u"SelCombox"));
        combox->Create(4, Rect{}, this);
        combox->AddString(u"My media");
        combox->SetCurSel(0);
        for (const char16_t* id : {u"URLInput", u"URLNameInput"})
            static_cast<CSWColorEdit*>(FindControlRecusive(id))
                ->Create(wndstyle::kChild | wndstyle::kVisible, Rect{}, this, 1);
        FindControlRecusive(u"URLInput")->SetText(u"http://");
        FindControlRecusive(u"URLErrorLabel")->SetVisible(0);
        SetDefaultOKButton(FindControlRecusive(u"BtnOK"));
        FocusObject(FindControlRecusive(u"URLNameInput"));
        return 1;
    }

private:
    void OnPress(CSkinObject* sender, void* /*data*/)
    {
        if (sender == FindControlRecusive(u"BtnOK"))
            DoCancelWndModal(1);
        if (sender == FindControlRecusive(u"BtnCancel"))
            DoCancelWndModal(0);
    }
};

// Runs `act` on the modal window once it is there.
void WhenModal(const std::function<void(QWidget&)>& act)
{
    QTimer::singleShot(0, qApp, [act] {
        QWidget* window = QApplication::activeModalWidget();
        ASSERT_NE(window, nullptr);
        ASSERT_TRUE(QTest::qWaitForWindowActive(window));
        act(*window);
    });
}

void ClickOn(QWidget& window, const char* name)
{
    for (QAbstractButton* const button : window.findChildren<QAbstractButton*>())
        if (button->text() == QLatin1String(name)) {
            QTest::mouseClick(button, Qt::LeftButton, {}, button->rect().center());
            return;
        }
    ADD_FAILURE() << "no button " << name;
}

struct FormEnd {
    const char* name;
    std::function<void(QWidget&)> act;
    int result;
};

TEST(ModalForm, EndsAsTheUserEndsIt)
{
    const Desk desk;
    const FormEnd ends[] = {
        {"Enter",
         [](QWidget& window) { QTest::keyClick(window.focusWidget(), Qt::Key_Return); },
         1                                                                                       },
        {"Escape",
         [](QWidget& window) {
             EXPECT_TRUE(window.focusWidget()->accessibleName().startsWith(u"Name"));
             QTest::keyClick(window.focusWidget(), Qt::Key_Escape);
         },                                                                                     0},
        {"OK",          [](QWidget& window) { ClickOn(window, "OK"); },                         1},
        {"Cancel",      [](QWidget& window) { ClickOn(window, "Cancel"); },                     0},
        {"Frame",       [](QWidget& window) { window.close(); },                                0},
        {"Interrupted",
         [](QWidget& /*window*/) { CSkinWndManager::GetInstance()->InterruptAllModalForms(); },
         0                                                                                       },
    };
    for (const FormEnd& end : ends) {
        SCOPED_TRACE(end.name);
        AddressForm form;
        WhenModal(end.act);
        EXPECT_EQ(form.DoWndModal(), end.result);
        EXPECT_FALSE(form.IsModal());
    }
    AddressForm ended; // Before it is shown.
    ended.DoCancelWndModal(1);
    EXPECT_EQ(ended.DoWndModal(), 1);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST(ModalForm, GrowsWithTheFontAndCutsNothing)
{
    for (const double scale : {1.0, 1.5}) {
        DeskLook look;
        look.fontScale = scale;
        const Desk desk(look);
        AddressForm form;
        form.FindControlRecusive(u"URLErrorLabel")->SetVisible(1);
        form.ShowWindow(5);
        const int field = form.FindControlRecusive(u"URLInput")->GetHeight();
        EXPECT_GE(field, static_cast<int>(34 * (scale > 1.0 ? 1.1 : 1.0)) - 4);
        QWidget* const error = WidgetOf(form.FindControlRecusive(u"URLErrorLabel"));
        EXPECT_GE(error->height(), error->sizeHint().height()) << "all lines of the error";
        const CSkinObject* ok = form.FindControlRecusive(u"BtnOK");
        EXPECT_TRUE(WidgetOf(&form)->rect().contains(ToQt(ok->GetRectInForm())));
        const CSkinObject* name = form.FindControlRecusive(u"URLNameInput");
        EXPECT_LE(name->GetRectInForm().bottom, ok->GetRectInForm().top);
    }
}

// A menu's owner writes down what was chosen.
struct Chooser {
    void OnChoice(IMenu* entry) { chosen = entry->GetID(); }
    int chosen = 0;
};

IMenu* MakeMenu(Chooser& chooser)
{
    const MenuDelegate delegate{&chooser, &Chooser::OnChoice};
    auto* menu = new IMenu;
    menu->AddMenu(u"Rock & Roll", 1, 0, 0, delegate, nullptr, {});
    menu->AddMenu(u"Can't", 2, 1, 0, delegate, nullptr, {});
    menu->AddMenu({}, 0, 0, 0, {}, nullptr, {});
    menu->AddMenu(u"In order", 14, 0, 1, delegate, nullptr, {});
    auto* below = new IMenu(u"Move to group", -1, 0, 0, {});
    below->AddMenu(u"My media", 0xE000, 0, 0, delegate, nullptr, {});
    menu->AddMenu(below);
    auto* off = new IMenu(u"Copy to group", -1, 1, 0, {});
    off->AddMenu(u"My media", 0xF000, 1, 0, delegate, nullptr, {});
    menu->AddMenu(off);
    return menu;
}

TEST(Menu, ShowsItsEntriesAsTheyAre)
{
    const Desk desk;
    DeskPage page;
    Chooser chooser;
    InMenu([](QMenu& menu) {
        const QList<QAction*> actions = menu.actions();
        ASSERT_EQ(actions.size(), 6);
        EXPECT_EQ(actions[0]->text(), QStringLiteral("Rock && Roll"));
        EXPECT_FALSE(actions[1]->isEnabled());
        EXPECT_TRUE(actions[2]->isSeparator());
        EXPECT_TRUE(actions[3]->isChecked());
        ASSERT_NE(actions[4]->menu(), nullptr);
        EXPECT_EQ(actions[4]->menu()->actions().size(), 1);
        EXPECT_FALSE(actions[5]->isEnabled());
        // Round corners, also where no compositor blends windows.
        EXPECT_FALSE(menu.mask().contains({3, 0}));
        EXPECT_TRUE(menu.mask().contains({4, 0})); // Touched: the edge is smooth.
        EXPECT_FALSE(menu.mask().contains({3, menu.height() - 1}));
        EXPECT_TRUE(menu.mask().contains(menu.rect().adjusted(4, 0, -5, 0).bottomRight()));
    });
    IMenu::PopupMenu(&page.GetForm(), MakeMenu(chooser), 20, 20, 0, {});
    EXPECT_EQ(chooser.chosen, 0);
}

TEST(Menu, NamesTheKeysWithoutListeningToThem)
{
    const Desk desk;
    DeskPage page;
    auto* const menu = new IMenu;
    menu->SetLastKeys(u"F2"); // Of no entry.
    menu->AddMenu(u"Delete\t", 1, 0, 0, {}, nullptr, {});
    menu->SetLastKeys(u"Del");
    menu->AddMenu(u"Open", 2, 0, 0, {}, nullptr, {});
    InMenu([](QMenu& shown) {
        ASSERT_EQ(shown.actions().size(), 2);
        EXPECT_EQ(shown.actions()[0]->text(), QStringLiteral("Delete \tDel"));
        EXPECT_TRUE(shown.actions()[0]->shortcut().isEmpty());
        EXPECT_EQ(shown.actions()[1]->text(), QStringLiteral("Open"));
    });
    IMenu::PopupMenu(&page.GetForm(), menu, 20, 20, 0, {});
}

TEST(Menu, RunsTheChoiceAfterItHasClosed)
{
    const Desk desk;
    DeskPage page;
    Chooser chooser;
    InMenu([](QMenu& menu) {
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Return})
            QTest::keyClick(&menu, key); // The disabled entry is passed over.
    });
    IMenu::PopupMenu(&page.GetForm(), MakeMenu(chooser), -1, -1, 0, {});
    EXPECT_EQ(chooser.chosen, 14);
    InMenu([](QMenu& menu) {
        QTest::mouseClick(
            &menu, Qt::LeftButton, {}, menu.actionGeometry(menu.actions()[0]).center());
    });
    IMenu::PopupMenu(&page.GetForm(), MakeMenu(chooser), 30, 30, 0, {});
    EXPECT_EQ(chooser.chosen, 1);
}

TEST(Tooltip, KeepsMarkupAsTextAndItsWidth)
{
    const Desk desk;
    const QString path = QStringLiteral("/music/<b>bold</b>&amp;/") + QString(400, u'x') +
                         QStringLiteral("\r\nThe file can't be found.");
    const QString wrapped = WrapTooltip(path, 300, QApplication::font());
    QTextDocument document;
    document.setDefaultFont(QApplication::font());
    document.setHtml(wrapped);
    EXPECT_LE(document.idealWidth(), 310);
    QString shown = document.toPlainText();
    EXPECT_EQ(shown.remove(u'\n'), QString(path).remove(QLatin1String("\r\n")));
}

struct FilterCase {
    const char16_t* filter = nullptr;
    QStringList shown;
};

TEST(Pickers, ReadTheFilterFormat)
{
    const FilterCase cases[] = {
        {u"",                            {}                                    },
        {u"Music|*.mp3;*.wma|All|*.*||",
         {QStringLiteral("Music (*.mp3 *.wma)"), QStringLiteral("All (*)")}    },
        {u"Odd (name)|*.m3u|",           {QStringLiteral("Odd [name] (*.m3u)")}},
        {u"Alone",                       {}                                    },
    };
    for (const FilterCase& row : cases)
        EXPECT_EQ(ReadFilter(row.filter), row.shown) << ToQt(row.filter).toStdString();
}

} // namespace
} // namespace kivo::ui::qt
