#pragma once

#include "host/Account.h"
#include "host/ContactDesk.h"
#include "host/HostSettings.h"
#include "host/IMessages.h"
#include "host/MainForm.h"
#include "host/Pages.h"
#include "host/Services.h"
#include "platform/base/PostQueue.h"
#include "tests/host/ScriptedSignNetwork.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace kivo::host {

// What stands behind the window of contacts: an account, and a network that a test speaks for.
struct ContactsRoom {
    ContactsRoom() = default;
    ContactsRoom(const ContactsRoom&) = delete;
    ContactsRoom& operator=(const ContactsRoom&) = delete;
    ~ContactsRoom() { network.listener = nullptr; }

    // Online, with an account and nobody there.
    void SignIn(const String& address)
    {
        account.Set({address, {}, 0, {}});
        account.SetOn(true);
        contacts.SetAccountOn(true);
        services.OnAccountChanged();
        network.ownId = address;
        network.SetState(SignConnection::Online);
        network.log.clear();
    }
    void Add(const String& id, const String& name, SignPresence presence)
    {
        contacts.OnContact({id, name, presence});
        PostQueue::Get().RunPending();
    }
    void Ask(const String& id)
    {
        contacts.OnContactAsks(id);
        PostQueue::Get().RunPending();
    }

    MainForm::Commands MakeCommands()
    {
        MainForm::Commands commands;
        commands.show = [this](IPluginWindow* page) { pages.ShowPluginPage(page); };
        commands.showSigns = [this](bool show) { services.ShowMediaState(show); };
        commands.areSignsShown = [this] { return services.IsMediaStateShown(); };
        commands.getOwnName = [this] {
            return account.IsOn() ? GetNameOf(account.Get().address) : String(u"Mara Lindqvist");
        };
        commands.isAccountOn = [this] { return account.IsOn(); };
        commands.isTitleOnly = [this] { return account.IsTitleOnly(); };
        commands.setTitleOnly = [this](bool titleOnly) { desk.SetTitleOnly(titleOnly); };
        commands.signOut = [this] { desk.SignOut(); };
        return commands;
    }
    ContactCommands MakeContactCommands()
    {
        ContactCommands commands;
        commands.activateSign = [this](const String& id) { activated += id + u" "; };
        commands.answer = [this](const String& id) { desk.Answer(id); };
        commands.remove = [this](const String& id) { desk.Remove(id); };
        commands.rename = [this](const String& id, const String& name) { desk.Rename(id, name); };
        commands.addContact = [this] { desk.AddContact(); };
        commands.setUpAccount = [this] { desk.SetUpAccount(); };
        commands.givePassword = [this] { desk.GivePassword(); };
        commands.judgeCertificate = [this] { desk.JudgeCertificate(); };
        commands.tryNow = [this] { desk.TryNow(); };
        commands.getSignPicture = [this](const String& kind) { return pictures + kind + u".png"; };
        commands.getServer = [this] { return desk.GetServer(); };
        commands.getNow = [this] { return now; };
        return commands;
    }

    class NoMessages final : public IMessages {
        bool Show(MessageKind /*kind*/, const String& /*title*/, const String& /*text*/) override
        {
            ADD_FAILURE() << "a message box";
            return false;
        }
    };

    test::TempFolder folder;
    HostSettings settings{folder.GetNative() / "host.ini"};
    Account account{settings};
    ScriptedSignNetwork network;
    Contacts contacts;
    NoMessages messages;
    Pages pages;
    Services services{
        {settings, account, network, messages, pages},
        folder.GetPath()
    };
    ContactDesk desk{
        {network, account, contacts, services}
    };
    String pictures; // In front of the kind, in the path of its picture.
    std::int64_t now = 0;
    String activated; // Ids, a blank behind each.
};

} // namespace kivo::host
