#pragma once

#include "shell/contracts/base/String.h"

class QWidget;

// What the program and its browser module promise each other. Thread: user interface.
namespace kivo::ui {

// Hears what a page does. Addresses come percent-encoded, as the page's link gave them but for
// letters, digits and "-._~", which never stay encoded.
class IWebViewListener {
public:
    // The page itself is about to go there. Called from inside the browser: don't end the view.
    virtual void OnNavigation(const String& url) = 0;

    // These may end the view.
    virtual void OnLoadStarted() = 0;
    virtual void OnLoadFinished() = 0;

    // The user has followed a link that wants a new window. None opens. http, https, mms and rtsp
    // alone; not again before it has returned.
    virtual void OnNewWindow(const String& url) = 0;

protected:
    ~IWebViewListener() = default;
};

// One page of http and https that can do nothing but show itself and follow links. Going away it
// takes along all that the page has stored.
class IWebView {
public:
    IWebView() = default;
    IWebView(const IWebView&) = delete;
    IWebView& operator=(const IWebView&) = delete;
    virtual ~IWebView() = default;
    [[nodiscard]] virtual QWidget* GetWidget() const = 0; // Null once Qt has deleted it.
    virtual void Navigate(const String& url) = 0;
};

// Makes a view as a child of `parent`; the caller's to delete, before the application object. The
// listener is borrowed. Null: a browser can't be had on this machine.
using WebViewMaker = IWebView* (*)(IWebViewListener& listener, QWidget* parent);

inline constexpr char16_t kWebModule[] = u"libkivo_web.so";
inline constexpr char kWebViewMaker[] = "KivoCreateWebView";

} // namespace kivo::ui
