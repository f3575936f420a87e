#include "platform/ui/qt/SkinLook.h"
#include "tests/host_ui/Stage.h"
#include "tests/support/CaseName.h"

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QLineEdit>
#include <QTest>
#include <QTreeView>

namespace kivo::host {
namespace {

using ui::qt::GetToken;

class ContactsLook : public testing::TestWithParam<StageLook> {
protected:
    QImage Grab(QWidget& widget, const std::string& name)
    {
        return Stage::Grab(widget, name + "-" + GetParam().name);
    }
    void GrabForm(const std::string& name)
    {
        Stage::InModal([this, name](QWidget& form) { Grab(form, name); });
    }

    Stage stage_{GetParam()};
};

TEST_P(ContactsLook, ShowsThePeople)
{
    stage_.Open();
    Grab(stage_.GetWindow(), "contacts-local");
    stage_.SignIn();
    Grab(stage_.GetWindow(), "contacts-nobody");
    stage_.AddSamples();
    stage_.GetList().setFocus();
    QTest::keyClick(&stage_.GetList(), Qt::Key_Home);
    const QImage picture = Grab(stage_.GetWindow(), "contacts-people");
    QTreeView& list = stage_.GetList();
    const QPoint end(list.viewport()->width() / 2, list.viewport()->height() - 3);
    const qreal ratio = picture.devicePixelRatio();
    EXPECT_EQ(picture.pixelColor((list.viewport()->mapTo(&stage_.GetWindow(), end) * ratio)),
              GetToken(u"base"));
    stage_.network.listener->OnContactAsks(u"kim@example.org");
    stage_.network.SetState(SignConnection::Waiting, 12);
    Grab(stage_.GetWindow(), "contacts-waiting");
    stage_.network.SetState(SignConnection::UntrustedCertificate, 0, u"self-signed certificate");
    Grab(stage_.GetWindow(), "contacts-untrusted");
}

// Each form as it opens, and with its errors.
TEST_P(ContactsLook, ShowsTheForms)
{
    stage_.Open();
    GrabForm("form-account");
    stage_.desk.SetUpAccount();
    Stage::InModal([this](QWidget& form) {
        stage_.GetButtonAt(form, u"MoreBtn").click();
        stage_.GetButtonAt(form, u"PublishBox").click();
        stage_.GetButtonAt(form, u"BtnOK").click();
        Grab(form, "form-account-error");
    });
    stage_.desk.SetUpAccount();
    stage_.SignIn();
    stage_.AddSamples();
    GrabForm("form-password");
    stage_.desk.GivePassword();
    Stage::InModal([this](QWidget& form) {
        stage_.GetButtonAt(form, u"BtnOK").click();
        Grab(form, "form-add");
    });
    stage_.desk.AddContact();
    GrabForm("form-answer");
    stage_.desk.Answer(u"kim@example.org");
    GrabForm("form-remove");
    stage_.desk.Remove(u"jonas@example.org");
    stage_.network.SetState(SignConnection::UntrustedCertificate, 0, u"self-signed certificate");
    GrabForm("form-certificate");
    stage_.desk.JudgeCertificate();
}

constexpr StageLook kLooks[] = {
    {"light",      false, false, 1.0, "en"   },
    {"dark",       true,  false, 1.0, "en"   },
    {"rtl",        false, true,  1.0, "en"   },
    {"large_font", false, false, 1.5, "en"   },
    {"german",     false, false, 1.0, "de"   },
    {"chinese",    true,  false, 1.0, "zh_CN"},
};

INSTANTIATE_TEST_SUITE_P(Looks, ContactsLook, testing::ValuesIn(kLooks), test::CaseName<StageLook>);

} // namespace
} // namespace kivo::host
