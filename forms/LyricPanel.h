#pragma once

#include "shell/contracts/ui/SkinPanel.h"

namespace kivo::ui {
class CSkinPhoto;
}

namespace kivo::tunehive {

class CLyricWnd;
class IPage;

// The lower pane: a caption, a close button, a picture and, on top of the picture, the window of
// the video. Which of them shows is the page's choice (IPage::SetPaneMode).
// Thread: user interface.
class CLyricPanel : public ui::CSkinPanel {
public:
    explicit CLyricPanel(IPage* page); // Borrowed; may be null.

    void Build(CWnd* parent); // Without a node in the build file nothing is built.
    int OnBuildControlAfter() override;

    // Null until it is built.
    [[nodiscard]] ui::CSkinObject* GetCaption() const { return caption_; }
    [[nodiscard]] ui::CSkinPhoto* GetPhoto() const { return photo_; }
    [[nodiscard]] CLyricWnd* GetVideoWindow() const { return videoWindow_; }

private:
    void OnControlEvent(ui::CSkinObject* sender, void* data);

    CWnd* parent_ = nullptr;
    IPage* page_;
    ui::CSkinObject* closeButton_ = nullptr;
    ui::CSkinObject* caption_ = nullptr;
    CLyricWnd* videoWindow_ = nullptr;
    ui::CSkinPhoto* photo_ = nullptr;
};

} // namespace kivo::tunehive
