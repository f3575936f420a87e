#include "host/FontLoader.h"

#include <fontconfig/fontconfig.h>
#include <QFontDatabase>
#include <QGuiApplication>

namespace kivo::host {

FontLoader::FontLoader()
    : work_(std::async(std::launch::async, [ready = ready_.get_future()] {
        FcInit(); // Qt's own call of it finds it done.
        ready.wait();
        if (qApp != nullptr)
            QFontDatabase::families(); // Makes Qt's table of all fonts, under its lock.
    }))
{
}

FontLoader::~FontLoader()
{
    if (!isReady_)
        ready_.set_value();
}

void FontLoader::OnApplicationReady()
{
    isReady_ = true;
    ready_.set_value();
}

} // namespace kivo::host
