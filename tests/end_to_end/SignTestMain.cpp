// kivo_signtest: the program with two differences. Contacts' addresses may point at this machine,
// where tests serve, and the password comes from the environment. A test drives it by lines on its
// input, through the widgets that a user would use, and reads on its output what they show.

#include "host/Arguments.h"
#include "host/Program.h"
#include "host/sign/SignNetwork.h"
#include "host/sign/XmppSignNetwork.h"
#include "shell/contracts/base/Property.h"

#include <QAbstractItemModel>
#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QMessageBox>
#include <QSocketNotifier>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace kivo::test {

namespace {

class FixedSecret final : public host::ISecretStore {
public:
    std::optional<std::string> Read(const String& /*address*/) override
    {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): nobody changes the environment
        const char* const password = std::getenv("KIVO_SIGNTEST_PASSWORD");
        return password != nullptr ? std::optional<std::string>(password) : std::nullopt;
    }
    bool Write(const String& /*address*/, const std::string& /*password*/) override
    {
        return false;
    }
    void Erase(const String& /*address*/) override {}
};

// A line with the time in front, by the clock that all processes share.
void Say(const std::string& what, const QString& text)
{
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    const auto time = std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
    std::cout << what << ' ' << time << ' ' << text.toStdString() << std::endl;
}

QString GetName(QWidget& widget)
{
    QAccessibleInterface* const access = QAccessible::queryAccessibleInterface(&widget);
    return access != nullptr ? access->text(QAccessible::Name) : QString();
}

// The window's eyes and hands.
class Hands {
public:
    Hands()
        : input_(STDIN_FILENO, QSocketNotifier::Read)
    {
        QObject::connect(&input_, &QSocketNotifier::activated, [this] { ReadInput(); });
        QObject::connect(&look_, &QTimer::timeout, [this] { Look(); });
        constexpr int kLookMs = 20;
        look_.start(kLookMs);
    }

private:
    static QTreeView* FindList()
    {
        for (QWidget* const window : QApplication::topLevelWidgets()) {
            for (QTreeView* const list : window->findChildren<QTreeView*>()) {
                if (GetName(*list) == QStringLiteral("Contacts"))
                    return list;
            }
        }
        return nullptr;
    }

    // Says each row of the contacts' page when it comes, and when it has gone.
    void Look()
    {
        std::set<QString> rows;
        if (const QTreeView* const list = FindList()) {
            for (int place = 0; place < list->model()->rowCount(); ++place)
                rows.insert(list->model()->index(place, 0).data(Qt::AccessibleTextRole).toString());
        }
        for (const QString& row : rows) {
            if (!rows_.contains(row))
                Say("row", row);
        }
        for (const QString& row : rows_) {
            if (!rows.contains(row))
                Say("gone", row);
        }
        rows_ = rows;
        LookForBox();
    }

    void LookForBox()
    {
        auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (box == nullptr || box == box_)
            return;
        box_ = box;
        Say("box", box->text());
        box->accept();
    }

    void ReadInput()
    {
        std::string bytes(4096, '\0');
        const ssize_t count = read(STDIN_FILENO, bytes.data(), bytes.size());
        if (count <= 0) {
            input_.setEnabled(false);
            return;
        }
        pending_ += bytes.substr(0, static_cast<std::size_t>(count));
        for (std::size_t end = 0; (end = pending_.find('\n')) != std::string::npos;) {
            Do(pending_.substr(0, end));
            pending_.erase(0, end + 1);
        }
    }

    static void Do(const std::string& line)
    {
        struct Key {
            const char* name;
            Qt::Key key;
        };
        constexpr Key kKeys[] = {
            {"play",  Qt::Key_MediaPlay },
            {"pause", Qt::Key_MediaPause},
            {"stop",  Qt::Key_MediaStop },
            {"next",  Qt::Key_MediaNext },
        };
        QTreeView* const list = FindList();
        if (list == nullptr)
            return;
        for (const Key& key : kKeys) {
            QKeyEvent press(QEvent::KeyPress, key.key, Qt::NoModifier);
            if (line == key.name)
                QApplication::sendEvent(list->window(), &press);
        }
        constexpr std::string_view kGo = "go ";
        if (line.starts_with(kGo))
            Go(*list, QString::fromStdString(line.substr(kGo.size())));
    }

    // To what the contact plays, by Enter on the row.
    static void Go(QTreeView& list, const QString& name)
    {
        for (int place = 0; place < list.model()->rowCount(); ++place) {
            const QModelIndex index = list.model()->index(place, 0);
            if (index.data().toString() != name)
                continue;
            list.setCurrentIndex(index);
            QTest::keyClick(&list, Qt::Key_Return);
        }
    }

    QSocketNotifier input_;
    QTimer look_;
    std::set<QString> rows_;
    std::string pending_;
    const QMessageBox* box_ = nullptr;
};

// Says what the program asks of the network, which is the real one.
class NotedNetwork final : public host::SignNetwork {
public:
    explicit NotedNetwork(const String& localName)
        : SignNetwork(localName, [](const String& name) {
            return std::make_unique<host::XmppSignNetwork>(
                name, std::make_unique<FixedSecret>(), host::SignAddressRule::Any);
        })
    {
    }

    void SetSign(const String& kind, const String& title, const Property& sign) override
    {
        Say("sign",
            QString::fromStdU16String(title) + " " + QString::fromStdU16String(sign.GetText(0)));
        SignNetwork::SetSign(kind, title, sign);
    }
    void RemoveSign() override
    {
        Say("nosign", {});
        SignNetwork::RemoveSign();
    }

private:
    Hands hands_;
};

} // namespace

} // namespace kivo::test

int main(int argc, char** argv)
{
    const std::vector<std::string> arguments(argv, argv + argc);
    kivo::host::ParsedArguments parsed = kivo::host::ParseArguments(arguments, "/");
    if (!parsed.error.empty()) {
        std::cerr << parsed.error << std::endl;
        return 2;
    }
    return kivo::host::Program(std::move(parsed.options),
                               [](const kivo::String& localName) {
                                   return std::make_unique<kivo::test::NotedNetwork>(localName);
                               })
        .Run();
}
