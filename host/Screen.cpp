#include "host/Screen.h"

#include "host/FontLoader.h"

#include <QApplication>

#include <clocale>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

namespace kivo::host {

namespace {

bool IsSet(const char* name)
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): read before the first thread starts
    const char* const value = std::getenv(name);
    return value != nullptr && *value != '\0';
}

// The platforms to try, in order. The last one always answers.
std::string ListPlatforms()
{
    std::string platforms;
    if (IsSet("WAYLAND_DISPLAY"))
        platforms += "wayland;";
    if (IsSet("DISPLAY"))
        platforms += "xcb;";
    return platforms + "offscreen";
}

// Arguments of our own making: the user's are read elsewhere, as bytes. The platform is named here
// and not in the environment, which programs that are started from here inherit.
std::vector<std::string> MakeArguments()
{
    std::vector<std::string> arguments{"kivo"};
    if (!IsSet("QT_QPA_PLATFORM")) {
        arguments.emplace_back("-platform");
        arguments.push_back(ListPlatforms());
    }
    return arguments;
}

std::vector<char*> PointTo(std::vector<std::string>& arguments)
{
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

struct Screen::Impl {
    Impl() { fonts->OnApplicationReady(); }
    Impl(const Impl&) = delete;
    Impl& operator=(const Impl&) = delete;
    ~Impl() { fonts.reset(); } // Before the application object.

    std::optional<FontLoader> fonts{std::in_place};
    std::vector<std::string> arguments = MakeArguments();
    std::vector<char*> pointers = PointTo(arguments);
    int count = static_cast<int>(arguments.size());
    QApplication application{count, pointers.data()};
};

Screen::Screen()
    : impl_(std::make_unique<Impl>())
{
    // The application object has just taken over the user's locale; numbers in files and in the
    // engine's commands have a point in every language.
    std::setlocale(LC_NUMERIC, "C"); // NOLINT(concurrency-mt-unsafe): before the first thread
    QApplication::setApplicationName(QStringLiteral("kivo"));
    QApplication::setDesktopFileName(QStringLiteral("kivo"));
    QApplication::setQuitOnLastWindowClosed(false); // The form says itself when it is done.
}

Screen::~Screen() = default;

bool Screen::IsVisible() const
{
    const QString platform = QGuiApplication::platformName();
    return platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
}

} // namespace kivo::host
