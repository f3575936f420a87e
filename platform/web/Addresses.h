#pragma once

#include <QUrl>

// Which addresses a page may go to or fetch from. Thread: any.
namespace kivo::web {

[[nodiscard]] bool IsPageAddress(const QUrl& url); // The page itself: http and https.
[[nodiscard]] bool IsPartAddress(const QUrl& url); // Frames, pictures, scripts and the like.
[[nodiscard]] bool IsLinkAddress(const QUrl& url); // Links that leave the page.

} // namespace kivo::web
