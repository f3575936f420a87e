#include "shell/base/XmlBounds.h"

namespace kivo::tunehive {

const char* FindTagEnd(const char* tag)
{
    char quote = '\0';
    for (const char* p = tag + 1; *p != '\0'; ++p) {
        if (quote != '\0')
            quote = *p == quote ? '\0' : quote;
        else if (*p == '"' || *p == '\'')
            quote = *p;
        else if (*p == '>')
            return p;
    }
    return nullptr;
}

} // namespace kivo::tunehive
