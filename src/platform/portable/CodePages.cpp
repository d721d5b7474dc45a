#include "platform/CodePages.h"

unsigned codePageFor(const QByteArray &)
{
    return 0;
}

// Nobody gets here: there is no code page to name.
CharacterSet::Decoded decodeByCodePage(unsigned, QByteArrayView)
{
    return {{}, true};
}

CharacterSet::Encoded encodeByCodePage(unsigned, QStringView)
{
    return {{}, true};
}
