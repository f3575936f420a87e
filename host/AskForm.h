#pragma once

#include "host/HostForm.h"

namespace kivo::host {

// One question with two answers. Closing it is no answer. Thread: user interface; modal.
class AskForm final : public HostForm {
public:
    struct Question {
        String title;
        String text;
        String detail; // Below the text, in letters to be compared; empty: none.
        String yes;
        String no;
        bool isNoTheDefault = false; // Enter then says no.
    };
    enum class Answer { None, Yes, No };

    explicit AskForm(Question question);
    [[nodiscard]] Answer GetAnswer(CWnd* parent); // Shows it and waits.

protected:
    void Fill() override;
    bool Accept() override;
    void OnButton(CSkinObject& button) override;

private:
    Question question_;
    Answer answer_ = Answer::None;
};

} // namespace kivo::host
