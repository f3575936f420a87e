#pragma once

#include "forms/MusicCabForm.h"
#include "platform/ui/qt/QtDesktop.h"
#include "tests/support/HttpServer.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <memory>
#include <string>
#include <vector>

// What the tests of the browser stand on: one desk with one server for all of them, since the first
// browser of a process takes its time, and the music cabinet with a page of the test's own.
namespace kivo::test {

// Turns the event loop until `isDone` says so. False: it didn't in time.
bool WaitUntil(const std::function<bool()>& isDone, int milliseconds = 20000);

class WebDesk {
public:
    static WebDesk& Get();

    WebDesk(const WebDesk&) = delete;
    WebDesk& operator=(const WebDesk&) = delete;

    HttpServer server;
    std::vector<String> opened; // In the user's browser.

private:
    WebDesk();
    ~WebDesk() = default;

    std::unique_ptr<ui::qt::QtDesktop> desktop_;
};

// Notes what the cabinet asks of it.
class NotingOwner final : public tunehive::IMusicCabOwner {
public:
    void StopPlayer() override;
    void AddTrack(const String& group,
                  const String& url,
                  const String& name,
                  int allowDuplicate,
                  String& sid) override;
    void PlayTrack(const String& group, const String& sid) override;
    int ShowAddURLForm(CWnd* parent, String& group, String& url, String& name) override;

    std::function<bool()> ask; // The user in front of the form; true: confirms. Empty: declines.
    String calls;              // A semicolon behind each.
};

// A cabinet, open, with a page of `html` in it. The page can say a word with tell(word).
class Cabinet {
public:
    explicit Cabinet(const std::string& html);
    Cabinet(const Cabinet&) = delete;
    Cabinet& operator=(const Cabinet&) = delete;
    ~Cabinet();

    // True: the page has said it, since the cabinet was opened.
    [[nodiscard]] bool WaitForWord(const std::string& word) const;
    [[nodiscard]] bool HasSaid(const std::string& word) const;

    void Click() const; // In the middle of the page.
    void Close();       // As the frame's button does.
    [[nodiscard]] bool IsOpen() const { return life_.IsAlive(); }
    [[nodiscard]] QWidget* GetPage() const { return page_; }

    NotingOwner owner;

private:
    tunehive::CMusicCabForm* form_;
    LifeWatch life_;
    QPointer<QWidget> page_;
    std::string number_; // Its words' own folder on the server.
};

// A page that is one big link, ready when it says so; a click is answered by what `script` does as
// well, which has later(f) for a while later. `href` may be empty.
std::string MakeLinkPage(const std::string& href, const std::string& script = "");

} // namespace kivo::test
