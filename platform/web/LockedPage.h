#pragma once

#include <QWebEnginePage>

namespace kivo::web {

// A page that may navigate by http and https, asks the user nothing, opens no window and is refused
// whatever it asks for. Thread: user interface.
class LockedPage final : public QWebEnginePage {
    Q_OBJECT

public:
    explicit LockedPage(QWebEngineProfile& profile);

signals:
    void Navigating(const QUrl& url);      // The page itself is about to go there.
    void NewWindowWanted(const QUrl& url); // By the user. Both come from inside the browser.

protected:
    bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame) override;
    QWebEnginePage* createWindow(WebWindowType type) override;
    QStringList
    chooseFiles(FileSelectionMode mode, const QStringList& old, const QStringList& types) override;
    void javaScriptAlert(const QUrl& origin, const QString& text) override;
    bool javaScriptConfirm(const QUrl& origin, const QString& text) override;
    bool javaScriptPrompt(const QUrl& origin,
                          const QString& text,
                          const QString& proposal,
                          QString* answer) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level,
                                  const QString& text,
                                  int line,
                                  const QString& source) override;
};

} // namespace kivo::web
