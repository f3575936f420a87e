#include "tests/platform/web/WebDesk.h"
#include "tests/support/CaseName.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslServer>
#include <QSslSocket>

#include <filesystem>

namespace kivo::test {
namespace {

// What a page tries after a click, which gives it all the rights that a page can have: `refused`
// and `done` are the two ends, `over` is the end of what a page can't see fail.
struct Attempt {
    const char* name;
    const char* script;
};

const Attempt kAttempts[] = {
    {"FetchesAFile",               "fetch('file:///etc/passwd').then(done, refused)"                                },
    {"GoesToAFile",                "location = 'file:///etc/passwd'; later(refused)"                                },
    {"GoesToThePagesOfTheBrowser", "location = 'chrome://gpu'; later(refused)"                                      },
    {"GoesToData",                 "location = 'data:text/html,x'; later(refused)"                                  },
    {"KeepsThings",                "try { localStorage.setItem('a', 'b'); done() } catch (e) { refused() }"         },
    {"ReadsTheClipboard",          "navigator.clipboard.readText().then(done, refused)"                             },
    {"AsksWhereWeAre",             "navigator.geolocation.getCurrentPosition(done, refused)"                        },
    {"Notifies",                   "Notification.requestPermission().then(p => p == 'granted' ? done() : refused())"},
    {"Listens",                    "navigator.mediaDevices.getUserMedia({audio: true}).then(done, refused)"         },
    {"Looks",                      "navigator.mediaDevices.getUserMedia({video: true}).then(done, refused)"         },
    {"TakesTheScreen",             "navigator.mediaDevices.getDisplayMedia().then(done, refused)"                   },
    {"FillsTheScreen",             "document.body.requestFullscreen().then(done, refused)"                          },
    {"CatchesThePointer",
     "document.onpointerlockchange = done; document.onpointerlockerror = refused;"
     "document.body.requestPointerLock()"                                                                           },
    {"AsksForAFile",
     "let i = document.createElement('input'); i.type = 'file'; i.onchange = done; i.click();"
     "later(() => i.files.length ? done() : refused())"                                                             },
    {"OpensTheFilesOfTheUser",     "showOpenFilePicker().then(done, refused)"                                       },
    {"WritesTheFilesOfTheUser",    "showSaveFilePicker().then(done, refused)"                                       },
    {"AsksTheUser",                "alert('a'); confirm('b') || prompt('c') ? done() : refused()"                   },
    {"DrawsByTheGraphicsCard",
     "document.createElement('canvas').getContext('webgl') ? done() : refused()"                                    },
    {"RunsPlugins",                "navigator.plugins.length ? done() : refused()"                                  },
    {"TalksOverASocket",
     "let s = new WebSocket('ws://' + location.host + '/socket');"
     "s.onopen = done; s.onerror = refused"                                                                         },
    {"ClosesTheForm",              "close(); later(refused)"                                                        },
    {"WritesTheClipboard",         "navigator.clipboard.writeText('loot').catch(() => {}); later(over)"             },
    {"CopiesIntoTheClipboard",
     "let t = document.createElement('textarea'); t.value = 'loot'; document.body.append(t);"
     "t.select(); document.execCommand('copy'); later(over)"                                                        },
    {"DownloadsByALink",
     "link.href = '/loot.bin'; link.download = 'loot.bin'; setTimeout(() => later(over), 300)"                      },
    {"DownloadsByGoingThere",      "location = '/loot.bin'; setTimeout(() => later(over), 300)"                     },
    {"DownloadsWhatItHas",
     "link.href = URL.createObjectURL(new Blob(['x'])); link.download = 'loot'; later(over)"                        },
    {"StartsAnotherProgram",       "location = 'mailto:a@b.example'; later(over)"                                   },
    {"FramesAnotherProgram",
     "let f = document.createElement('iframe'); f.src = 'tel:1'; document.body.append(f);"
     "later(over)"                                                                                                  },
    {"PrintsItself",               "print(); later(over)"                                                           },
    {"TakesOverLinks",
     "try { navigator.registerProtocolHandler('mailto', '/?%s') } catch (e) {} later(over)"                         },
    {"MovesTheForm",               "moveTo(0, 0); resizeTo(9, 9); later(over)"                                      },
    {"OpensBlankWindows",          "open(); open('about:blank'); later(over)"                                       },
    {"OpensFilesInWindows",        "open('file:///etc/passwd'); later(over)"                                        },
};

class AttemptTest : public testing::TestWithParam<Attempt> {};

// Counts what would have left the program.
class Leaks final : public QObject {
    Q_OBJECT

public:
    Leaks()
    {
        for (const char* const scheme : {"mailto", "file", "tel"})
            QDesktopServices::setUrlHandler(QLatin1String(scheme), this, "OnOpen");
        QApplication::clipboard()->setText(QStringLiteral("the user's"));
    }
    Leaks(const Leaks&) = delete;
    Leaks& operator=(const Leaks&) = delete;
    ~Leaks() override
    {
        for (const char* const scheme : {"mailto", "file", "tel"})
            QDesktopServices::unsetUrlHandler(QLatin1String(scheme));
    }

    void ExpectNone() const
    {
        EXPECT_EQ(opened, 0);
        EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("the user's"));
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        for (const QWidget* const window : QApplication::topLevelWidgets())
            EXPECT_FALSE(window->isFullScreen());
        EXPECT_EQ(WebDesk::Get().server.CountRequests("/socket"), 0U);
        for (const auto& entry :
             std::filesystem::recursive_directory_iterator(QDir::homePath().toStdString()))
            EXPECT_EQ(entry.path().native().find("loot"), std::string::npos) << entry.path();
    }

    Q_INVOKABLE void OnOpen(const QUrl& /*url*/) { ++opened; }

    int opened = 0;
};

std::string MakeAttemptPage(const std::string& script)
{
    return MakeLinkPage("",
                        "let hasEnded = false;"
                        "function end(word) { if (!hasEnded) tell(word); hasEnded = true; }"
                        "function done() { end('done'); } function refused() { end('refused'); }"
                        "function over() { end('over'); }" +
                            script);
}

TEST_P(AttemptTest, ComesToNothing)
{
    const Leaks leaks;
    WebDesk::Get().server.ServeBytes("/loot.bin", "loot", "application/octet-stream");
    const Cabinet cabinet(MakeAttemptPage(GetParam().script));
    ASSERT_TRUE(cabinet.WaitForWord("ready"));
    const QRect place = cabinet.GetPage()->window()->geometry();
    const auto windows = QApplication::topLevelWidgets().size();
    cabinet.Click();
    EXPECT_TRUE(WaitUntil([&] {
        return cabinet.HasSaid("refused") || cabinet.HasSaid("over") || cabinet.HasSaid("done");
    }));
    EXPECT_FALSE(cabinet.HasSaid("done"));
    EXPECT_TRUE(cabinet.IsOpen());
    EXPECT_EQ(cabinet.GetPage()->window()->geometry(), place);
    EXPECT_EQ(QApplication::topLevelWidgets().size(), windows);
    EXPECT_TRUE(WebDesk::Get().opened.empty());
    EXPECT_EQ(cabinet.owner.calls, u"");
    leaks.ExpectNone();
}

INSTANTIATE_TEST_SUITE_P(Web, AttemptTest, testing::ValuesIn(kAttempts), CaseName<Attempt>);

TEST(Forbidden, AWindowThatNobodyAskedFor)
{
    const Cabinet cabinet("<script>tell(open('http://ad.example/') ? 'done' : 'refused')</script>");
    EXPECT_TRUE(cabinet.WaitForWord("refused"));
    EXPECT_TRUE(WebDesk::Get().opened.empty());
}

TEST(Forbidden, AFloodOfWindowsForOneClick)
{
    const Cabinet cabinet(
        MakeLinkPage("",
                     "for (let i = 0; i < 20; ++i) open('http://ad.example/' + i);"
                     "setTimeout(() => tell('over'), 200)"));
    ASSERT_TRUE(cabinet.WaitForWord("ready"));
    cabinet.Click();
    EXPECT_TRUE(cabinet.WaitForWord("over"));
    EXPECT_EQ(WebDesk::Get().opened.size(), 1U);
}

// A server of https whose certificate nobody has signed.
class UnknownServer final : public QSslServer {
public:
    UnknownServer()
    {
        const TempFolder folder;
        const QString path = QString::fromStdString(folder.GetNative().string());
        QProcess openssl;
        openssl.start(QStringLiteral("openssl"),
                      (QStringLiteral("req -x509 -newkey rsa:2048 -nodes -subj /CN=127.0.0.1 "
                                      "-keyout %1/key -out %1/cert")
                           .arg(path))
                          .split(u' '));
        EXPECT_TRUE(openssl.waitForFinished());
        EXPECT_EQ(openssl.exitCode(), 0);
        QFile key(path + QStringLiteral("/key"));
        EXPECT_TRUE(key.open(QIODevice::ReadOnly));
        QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
        configuration.setLocalCertificateChain(
            QSslCertificate::fromPath(path + QStringLiteral("/cert")));
        configuration.setPrivateKey(QSslKey(&key, QSsl::Rsa));
        setSslConfiguration(configuration);
        EXPECT_TRUE(listen(QHostAddress::LocalHost));
        connect(this, &QTcpServer::newConnection, this, [this] {
            while (QTcpSocket* const socket = nextPendingConnection())
                connect(socket, &QIODevice::readyRead, this, [this, socket] {
                    ++requests;
                    socket->write("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nhi");
                });
        });
        connect(this, &QSslServer::startedEncryptionHandshake, this, [this] { ++handshakes; });
    }

    [[nodiscard]] std::string GetUrl() const
    {
        return "https://127.0.0.1:" + std::to_string(serverPort()) + "/";
    }

    int handshakes = 0;
    int requests = 0;
};

TEST(Forbidden, ACertificateThatNobodyKnows)
{
    UnknownServer server;
    const Cabinet cabinet(
        MakeAttemptPage("fetch('" + server.GetUrl() + "', {mode: 'no-cors'}).then(done, refused)"));
    ASSERT_TRUE(cabinet.WaitForWord("ready"));
    cabinet.Click();
    EXPECT_TRUE(cabinet.WaitForWord("refused"));
    EXPECT_FALSE(cabinet.HasSaid("done"));

    const int before = server.handshakes;
    EXPECT_GT(before, 0);
    const Cabinet going("<script>location = '" + server.GetUrl() + "'</script>");
    EXPECT_TRUE(WaitUntil([&] { return server.handshakes > before; }));
    const Cabinet after(MakeLinkPage(""));
    EXPECT_TRUE(after.WaitForWord("ready"));
    EXPECT_EQ(server.requests, 0);
}

} // namespace
} // namespace kivo::test

#include "ForbiddenTest.moc"
