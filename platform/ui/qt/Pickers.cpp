#include "platform/ui/qt/Pickers.h"

#include "platform/ui/qt/WidgetPeer.h"
#include "shell/contracts/ui/SkinForm.h"
#include "shell/contracts/ui/SkinWndManager.h"

#include <QDesktopServices>
#include <QFileDialog>
#include <QPointer>
#include <QUrl>

#include <memory>
#include <string>

namespace kivo::ui::qt {

namespace {

QWidget* DialogOwner(CWnd* parent)
{
    QWidget* owner = WindowWidgetOf(parent);
    if (owner == nullptr)
        owner = WidgetOf(CSkinWndManager::GetInstance()->GetMainForm());
    return owner == nullptr ? nullptr : owner->window();
}

// The path's own bytes: Qt's dialogs know names in UTF-8 alone, so none can be lost on the way
// back.
String PathOf(const QString& path)
{
    return common::PathToText(path.toStdString());
}

QString FolderText(const String& folder)
{
    return QString::fromStdString(common::TextToPath(folder));
}

QUrl FileUrl(const String& path)
{
    const std::string bytes = common::TextToPath(path);
    const QByteArray raw(bytes.data(), static_cast<qsizetype>(bytes.size()));
    return QUrl::fromEncoded("file://" + raw.toPercentEncoding("/"));
}

} // namespace

QStringList ReadFilter(const String& filter)
{
    const QStringList parts = ToQt(filter).split(u'|');
    QStringList filters;
    for (qsizetype index = 0; index + 1 < parts.size(); index += 2) {
        if (parts[index].isEmpty())
            break;
        QString patterns = parts[index + 1];
        if (patterns == QLatin1String("*.*"))
            patterns = QStringLiteral("*"); // A name without a dot is a file here.
        // A bracket in the name would be taken for the patterns.
        QString name = parts[index];
        name.replace(u'(', u'[').replace(u')', u']');
        filters.append(QStringLiteral("%1 (%2)").arg(name, patterns.replace(u';', u' ')));
    }
    return filters;
}

CStringArray ChooseFiles(CWnd* parent, const String& filter, const String& directory, bool native)
{
    const QPointer<QFileDialog> dialog(new QFileDialog(DialogOwner(parent)));
    dialog->setFileMode(QFileDialog::ExistingFiles);
    dialog->setOption(QFileDialog::DontUseNativeDialog, !native);
    dialog->setNameFilters(ReadFilter(filter));
    if (!directory.empty())
        dialog->setDirectory(FolderText(directory));
    CStringArray paths;
    const bool chosen = dialog->exec() == QDialog::Accepted;
    if (dialog == nullptr)
        return paths;
    if (chosen)
        for (const QString& path : dialog->selectedFiles())
            paths.push_back(PathOf(path));
    dialog->deleteLater();
    return paths;
}

String ChooseFolder(CWnd* parent, const String& title, bool native)
{
    const QPointer<QFileDialog> dialog(new QFileDialog(DialogOwner(parent), ToScreen(title)));
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    dialog->setOption(QFileDialog::DontUseNativeDialog, !native);
    const bool chosen = dialog->exec() == QDialog::Accepted;
    if (dialog == nullptr)
        return {};
    const QStringList folders = dialog->selectedFiles();
    dialog->deleteLater();
    return chosen && !folders.isEmpty() ? PathOf(folders.front()) : String();
}

void OpenAddress(const String& url)
{
    QDesktopServices::openUrl(QUrl(ToQt(url), QUrl::TolerantMode));
}

void ShowFolder(const String& folder)
{
    QDesktopServices::openUrl(FileUrl(folder));
}

} // namespace kivo::ui::qt
