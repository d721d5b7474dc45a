#include "tools/LinkContext.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {
constexpr qsizetype longestTag = 2000; // characters before the cursor that are looked at
}

std::optional<LinkContext> linkContext(const QString &before)
{
    const qsizetype from = qMax<qsizetype>(0, before.size() - longestTag);
    const qsizetype tag = before.lastIndexOf(u'<');
    if (tag < from)
        return {};
    static const QRegularExpression open(
        u"^<[a-z][^<>]*?\\s(?:(href)|src)\\s*=\\s*([\"'])([^\"'<>]*)$"_s,
        QRegularExpression::CaseInsensitiveOption);
    const QRegularExpressionMatch match = open.match(before.sliced(tag));
    if (!match.hasMatch())
        return {};
    return LinkContext{tag + match.capturedStart(3), match.captured(3),
                       match.captured(1).isEmpty()};
}
