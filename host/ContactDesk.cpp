#include "host/ContactDesk.h"

#include "host/Account.h"
#include "host/AccountForm.h"
#include "host/AddContactForm.h"
#include "host/AskForm.h"
#include "host/ContactNotice.h"
#include "host/Contacts.h"
#include "host/PasswordForm.h"
#include "host/PlainLine.h"
#include "host/Services.h"
#include "host/Texts.h"
#include "shell/contracts/common/Text.h"

namespace kivo::host {

namespace {

constexpr std::size_t kLongestInQuestion = 80; // Units of a stranger's text.

String MakeSentence(const char16_t* id, StringView about)
{
    return common::FormatText(GetText(id), {ToPlainLine(about, kLongestInQuestion)});
}

} // namespace

ContactDesk::ContactDesk(const Parts& parts)
    : parts_(parts)
{
}

String ContactDesk::GetServer() const
{
    const SignAccount account = parts_.account.Get();
    return account.server.empty() ? GetServerOf(account.address) : account.server;
}

void ContactDesk::SignIn()
{
    if (parts_.account.IsOn())
        parts_.signs.SignIn(parts_.account.Get());
}

void ContactDesk::TryNow()
{
    parts_.signs.TryNow();
}

void ContactDesk::SetUpAccount()
{
    Account& account = parts_.account;
    AccountForm::Choice preset;
    preset.account = account.Get();
    preset.publishes = account.IsPublishing();
    preset.isTitleOnly = account.IsTitleOnly();
    AccountForm form(preset, /*hasKept=*/!preset.account.address.empty());
    if (!form.Ask(window_))
        return;
    const AccountForm::Choice& choice = form.GetChoice();
    account.Set(choice.account);
    account.SetPublishing(choice.publishes);
    account.SetTitleOnly(choice.isTitleOnly);
    account.SetOn(true);
    parts_.contacts.SetAccountOn(true);
    parts_.services.OnAccountChanged(); // First: nothing may leave that the user hasn't allowed.
    parts_.signs.SignIn(choice.account);
    if (!choice.password.empty())
        parts_.signs.GivePassword(choice.password, choice.keepsPassword);
}

void ContactDesk::SignOut()
{
    parts_.account.SetOn(false);
    parts_.contacts.SetAccountOn(false);
    parts_.signs.SignOut();
    parts_.services.OnAccountChanged();
}

void ContactDesk::GivePassword()
{
    PasswordForm form(parts_.account.Get().address);
    if (form.Ask(window_))
        parts_.signs.GivePassword(form.GetPassword(), form.IsToBeKept());
}

void ContactDesk::JudgeCertificate()
{
    // As it is shown: another may arrive while the user compares.
    const std::string fingerprint = parts_.contacts.GetState().fingerprint;
    if (fingerprint.empty())
        return;
    AskForm::Question question;
    question.title = GetText(u"STRID_KIVO_CERTIFICATE_TITLE");
    question.text = MakeSentence(u"STRID_KIVO_CERTIFICATE_TEXT", GetServer());
    question.detail = FormatFingerprint(fingerprint);
    question.yes = GetText(u"STRID_KIVO_CERTIFICATE_YES");
    question.no = GetText(u"STRID_KIVO_CERTIFICATE_NO");
    question.isNoTheDefault = true;
    if (AskForm(question).GetAnswer(window_) != AskForm::Answer::Yes)
        return;
    parts_.account.SetFingerprint(fingerprint);
    parts_.signs.TrustCertificate(fingerprint);
}

void ContactDesk::SetTitleOnly(bool titleOnly)
{
    parts_.account.SetTitleOnly(titleOnly);
    parts_.services.OnAccountChanged();
}

void ContactDesk::AddContact()
{
    AddContactForm form(parts_.account.Get().address);
    if (form.Ask(window_))
        parts_.signs.AddContact(form.GetId());
}

void ContactDesk::Answer(const String& id)
{
    AskForm::Question question;
    question.title = GetText(u"STRID_KIVO_REQUEST_TITLE");
    question.text = MakeSentence(u"STRID_KIVO_REQUEST_TEXT", id);
    question.yes = GetText(u"STRID_KIVO_REQUEST_YES");
    question.no = GetText(u"STRID_KIVO_REQUEST_NO");
    const AskForm::Answer answer = AskForm(question).GetAnswer(window_);
    if (answer == AskForm::Answer::None)
        return; // Asked again another time.
    parts_.contacts.OnRequestGone(id);
    parts_.signs.AnswerContact(id, answer == AskForm::Answer::Yes);
}

void ContactDesk::Remove(const String& id)
{
    const Contact* const contact = parts_.contacts.Find(id);
    if (contact == nullptr)
        return;
    AskForm::Question question;
    question.title = GetText(u"STRID_KIVO_REMOVE_TITLE");
    question.text = MakeSentence(u"STRID_KIVO_REMOVE_TEXT", contact->name);
    question.yes = GetText(u"STRID_KIVO_REMOVE_YES");
    question.no = GetText(u"STRID_KIVO_CANCEL");
    question.isNoTheDefault = true;
    if (AskForm(question).GetAnswer(window_) == AskForm::Answer::Yes)
        parts_.signs.RemoveContact(id);
}

void ContactDesk::Rename(const String& id, const String& name)
{
    parts_.signs.RenameContact(id, name);
}

} // namespace kivo::host
