#include "startup/CharsetNames.h"

using namespace Qt::StringLiterals;

namespace {

struct Alias
{
    QLatin1StringView declared; // in lower case
    const char *encoding;
};

// Names that pages use for less, or for something else, than they hold: the wider sets are read.
constexpr Alias aliases[] = {
    {"us-ascii"_L1, "windows-1252"},
    {"ascii"_L1, "windows-1252"},
    {"ansi"_L1, "windows-1252"},
    {"latin1"_L1, "windows-1252"},
    {"iso-8859-1"_L1, "windows-1252"},
    {"iso8859-1"_L1, "windows-1252"},
    {"iso_8859-1"_L1, "windows-1252"},
    {"iso-8859-9"_L1, "windows-1254"},
    {"gb2312"_L1, "GB18030"},
    {"gb_2312-80"_L1, "GB18030"},
    {"gbk"_L1, "GB18030"},
    {"x-gbk"_L1, "GB18030"},
    {"euc-kr"_L1, "windows-949"},
    {"ks_c_5601-1987"_L1, "windows-949"},
    {"ksc5601"_L1, "windows-949"},
    {"x-sjis"_L1, "Shift_JIS"},
    {"x-x-big5"_L1, "Big5"},
    {"x-euc-jp"_L1, "EUC-JP"},
    {"utf8"_L1, "UTF-8"},
};

} // namespace

QByteArray encodingFor(const QString &declared)
{
    const QString name = declared.toLower();
    for (const Alias &alias : aliases) {
        if (name == alias.declared)
            return alias.encoding;
    }
    return declared.toLatin1();
}
