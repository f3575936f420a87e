#include "host/AskForm.h"

#include <utility>

namespace kivo::host {

AskForm::AskForm(Question question)
    : HostForm(u"KivoAskForm", question.title)
    , question_(std::move(question))
{
}

AskForm::Answer AskForm::GetAnswer(CWnd* parent)
{
    static_cast<void>(Ask(parent));
    return answer_;
}

void AskForm::Fill()
{
    SetControlText(u"AskText", question_.text);
    SetControlText(u"AskDetail", question_.detail);
    ShowControl(u"AskDetailPanel", !question_.detail.empty());
    SetControlText(u"BtnOK", question_.yes);
    SetControlText(u"BtnNo", question_.no);
    CSkinObject* const no = FindControlRecusive(u"BtnNo");
    CSkinObject* const yes = FindControlRecusive(u"BtnOK");
    if (!question_.isNoTheDefault || no == nullptr || yes == nullptr)
        return;
    no->SetSkinName(u"default");
    yes->SetSkinName(u"plain");
    SetDefaultOKButton(no);
    FocusObject(no);
}

bool AskForm::Accept()
{
    answer_ = Answer::Yes;
    return true;
}

void AskForm::OnButton(CSkinObject& button)
{
    if (button.GetObjectID() != u"BtnNo")
        return;
    answer_ = Answer::No;
    DoCancelWndModal(0);
}

} // namespace kivo::host
