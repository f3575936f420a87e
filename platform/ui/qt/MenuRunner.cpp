#include "platform/ui/qt/FormPeer.h"
#include "platform/ui/qt/InputWatch.h"
#include "platform/ui/qt/MenuPlace.h"
#include "platform/ui/qt/WidgetPeer.h"
#include "shell/contracts/ui/Menu.h"
#include "shell/contracts/ui/SkinForm.h"

#include <QApplication>
#include <QCursor>
#include <QHash>
#include <QKeySequence>
#include <QMenu>
#include <QPointer>

namespace kivo::ui::qt {

namespace {

using EntryMap = QHash<const QAction*, IMenu*>;

QString EntryText(const IMenu& entry)
{
    QString text = ToScreen(entry.GetDisplayText());
    // A lone "&" would mark a key and vanish; a tab would begin the column of keys.
    return text.replace(u'&', QLatin1String("&&")).replace(u'\t', u' ');
}

// The column of keys. Not the action's own shortcut: the keys are listened to elsewhere.
QString KeysText(const IMenu& entry)
{
    if (entry.GetKeys().empty())
        return {};
    const QKeySequence keys(ToQt(entry.GetKeys()), QKeySequence::PortableText);
    return u'\t' + keys.toString(QKeySequence::NativeText);
}

void Fill(QMenu& target, IMenu& source, EntryMap& entries)
{
    for (const Released<IMenu>& entry : source.GetEntries()) {
        if (entry->IsSeparator()) {
            target.addSeparator();
            continue;
        }
        if (entry->IsSubMenu()) {
            QMenu* below = target.addMenu(EntryText(*entry));
            below->setEnabled(!entry->IsDisabled());
            below->menuAction()->setEnabled(!entry->IsDisabled());
            Fill(*below, *entry, entries);
            continue;
        }
        QAction* action = target.addAction(EntryText(*entry) + KeysText(*entry));
        action->setEnabled(!entry->IsDisabled());
        if (entry->IsChecked()) {
            action->setCheckable(true);
            action->setChecked(true);
        }
        entries.insert(action, entry.get());
    }
}

// Below what has the keyboard, when a key asked; else at the pointer.
QPoint GetPlace(int x, int y)
{
    if (x != -1 || y != -1)
        return {x, y};
    QWidget* focused = QApplication::focusWidget();
    if (!InputWatch::IsAtKeys() || focused == nullptr)
        return QCursor::pos();
    if (const auto* place = dynamic_cast<IMenuPlace*>(focused))
        return place->GetMenuPlace();
    const bool mirrored = focused->isRightToLeft();
    return focused->mapToGlobal(mirrored ? focused->rect().bottomRight()
                                         : focused->rect().bottomLeft());
}

} // namespace

IMenu* RunMenu(CSkinForm* form, IMenu& menu, int x, int y)
{
    QWidget* owner = WidgetOf(form);
    const QPoint place = GetPlace(x, y);
    // Its owner may delete it while it is open.
    const QPointer<QMenu> shown(new QMenu(owner));
    EntryMap entries;
    Fill(*shown, menu, entries);
    const QAction* chosen = shown->exec(place);
    IMenu* entry = entries.value(chosen, nullptr);
    if (shown != nullptr)
        shown->deleteLater();
    return entry;
}

} // namespace kivo::ui::qt
