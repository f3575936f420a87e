#include "shell/contracts/base/IPlugin.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QLocalServer>
#include <QLocalSocket>
#include <QMenu>
#include <QTreeView>

namespace {

// Tells a test where things are on the screen, in the shape of a plug-in: whoever connects to the
// socket KIVO_EYES gets a line for each thing that shows, "KIND|NAME|X|Y|WIDTH|HEIGHT|STATE|VALUE",
// as a screen reader would name it. It touches nothing.
class Eyes final : public kivo::IPlugin {
public:
    int OnLoad(kivo::CWnd* /*parent*/, kivo::IPluginWindowLayout* /*layout*/) override
    {
        server_ = new QLocalServer(qApp);
        QObject::connect(server_, &QLocalServer::newConnection, server_, [this] {
            while (QLocalSocket* const socket = server_->nextPendingConnection()) {
                socket->write(Look().toUtf8());
                socket->disconnectFromServer();
                QObject::connect(
                    socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            }
        });
        return server_->listen(qEnvironmentVariable("KIVO_EYES")) ? 1 : 0;
    }
    int OnUnLoad() override
    {
        delete server_;
        server_ = nullptr;
        return 1;
    }
    int GetHostWord1() override { return 1; }
    int GetHostWord2() override { return 0; }
    int GetHostWord3() override { return 1; }
    int GetHostWord4() override { return 0; }

private:
    static QString MakeLine(const QString& kind,
                            const QString& name,
                            const QRect& place,
                            const QStringList& states,
                            const QString& value = {})
    {
        QString clean = name;
        clean.replace(u'|', u' ').replace(u'\n', u' ');
        return QStringList{kind,
                           clean,
                           QString::number(place.x()),
                           QString::number(place.y()),
                           QString::number(place.width()),
                           QString::number(place.height()),
                           states.join(u' '),
                           value}
                   .join(u'|') +
               u'\n';
    }

    static QRect OnScreen(const QWidget& widget, const QRect& place)
    {
        return {widget.mapToGlobal(place.topLeft()), place.size()};
    }

    static QString Look()
    {
        QString lines;
        for (QWidget* const widget : QApplication::allWidgets()) {
            if (!widget->isVisible())
                continue;
            if (auto* const view = qobject_cast<QTreeView*>(widget))
                lines += LookAtRows(*view, view->rootIndex());
            if (auto* const menu = qobject_cast<QMenu*>(widget))
                lines += LookAtEntries(*menu);
            lines += LookAtWidget(*widget);
        }
        return lines;
    }

    static QString LookAtWidget(QWidget& widget)
    {
        QAccessibleInterface* const access = QAccessible::queryAccessibleInterface(&widget);
        if (access == nullptr)
            return {};
        QStringList states;
        if (widget.hasFocus())
            states += QStringLiteral("focused");
        if (!widget.isEnabled())
            states += QStringLiteral("disabled");
        if (widget.isWindow() && widget.isActiveWindow())
            states += QStringLiteral("active");
        return MakeLine(widget.isWindow() ? QStringLiteral("window") : QStringLiteral("control"),
                        access->text(QAccessible::Name),
                        OnScreen(widget, widget.rect()),
                        states,
                        access->text(QAccessible::Value));
    }

    static QString LookAtEntries(const QMenu& menu)
    {
        QString lines;
        for (QAction* const entry : menu.actions())
            lines += MakeLine(QStringLiteral("entry"),
                              entry->text().replace(QLatin1String("&&"), QLatin1String("&")),
                              OnScreen(menu, menu.actionGeometry(entry)),
                              entry->isEnabled() ? QStringList() : QStringList{"disabled"},
                              entry->isChecked() ? QStringLiteral("checked") : QString());
        return lines;
    }

    static QString LookAtRows(const QTreeView& view, const QModelIndex& above)
    {
        QString lines;
        const QAbstractItemModel& model = *view.model();
        for (int row = 0; row < model.rowCount(above); ++row) {
            const QModelIndex index = model.index(row, 0, above);
            const QRect place = view.visualRect(index);
            QStringList states;
            if (view.selectionModel()->isSelected(index))
                states += QStringLiteral("selected");
            if (view.isExpanded(index))
                states += QStringLiteral("open");
            if (!place.isEmpty())
                lines += MakeLine(above.isValid() ? above.data(Qt::DisplayRole).toString()
                                                  : QStringLiteral("group"),
                                  index.data(Qt::DisplayRole).toString(),
                                  OnScreen(*view.viewport(), place),
                                  states,
                                  index.data(Qt::AccessibleTextRole).toString());
            if (view.isExpanded(index))
                lines += LookAtRows(view, index);
        }
        return lines;
    }

    QLocalServer* server_ = nullptr;
};

Eyes eyes;

} // namespace

extern "C" KIVO_API kivo::IPlugin* GetKivoPluginInstance()
{
    return &eyes;
}
