#pragma once

#include "host/ContactNotice.h"
#include "host/ContactRows.h"
#include "shell/contracts/framework/Timers.h"
#include "shell/contracts/ui/SkinPanel.h"

namespace kivo {
class CWnd;
}

namespace kivo::host {

class ContactList;

// The page of contacts. While nobody is signed in it says what an account would give; else it shows
// the contacts, with a sentence above them when the connection has something to say.
// Thread: user interface.
class ContactsPage : public ui::CSkinPanel {
public:
    ContactsPage(const Contacts& contacts, ContactCommands commands); // The first is borrowed.
    ~ContactsPage() override;

    void Build(CWnd* window); // Once, below a parent that lies in the window.
    void ShowConnection();    // The state of the connection is another.
    void ShowPeople();        // People or requests are others.

    void CalculateBounds(const Rect& place) override;
    void SetVisible(int visible) override;

private:
    enum class Content { Invitation, NobodyYet, People };
    [[nodiscard]] Content GetContent() const;
    void ShowContent();
    void ShowNotice();
    [[nodiscard]] int GetSecondsLeft() const;
    void CountDown();
    static void OnTick(HWND window, unsigned message, TimerId timer, std::uint32_t time);
    void OnControl(ui::CSkinObject* sender, void* data);
    void DoDeed(NoticeDeed deed) const;

    const Contacts& contacts_;
    ContactCommands commands_;
    ContactNotice notice_;
    ContactList* list_ = nullptr;
    TimerId timer_ = 0;
    std::int64_t nextTry_ = 0; // By the clock of the commands.
};

} // namespace kivo::host
