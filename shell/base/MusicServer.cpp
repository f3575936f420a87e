#include "shell/base/MusicServer.h"

namespace kivo::tunehive {

namespace {

String& Server()
{
    static String server = u"" KIVO_MUSIC_SERVER;
    return server;
}

} // namespace

const String& GetMusicServer()
{
    return Server();
}

void SetMusicServer(const String& hostAndPort)
{
    Server() = hostAndPort;
}

} // namespace kivo::tunehive
