#include "platform/shared/IniText.h"

#include "platform/QvError.h"

#include <QStringDecoder>

#include <algorithm>
#include <cctype>

using namespace Qt::StringLiterals;

namespace {

bool needsEscape(const QString &text, qsizetype at)
{
    const QChar c = text[at];
    const bool atRim = at == 0 || at + 1 == text.size();
    return c == u'%' || c == u'=' || c == u'[' || c == u']' || c.isSurrogate() || c.unicode() < 0x20
           || c.unicode() == 0x7F || c.unicode() == QChar::ByteOrderMark
           || c == QChar::LineSeparator || c == QChar::ParagraphSeparator || (atRim && c.isSpace())
           || (at == 0 && (c == u';' || c == u'#'));
}

QString escaped(const QString &text)
{
    QString result;
    for (qsizetype at = 0; at < text.size(); ++at) {
        const char16_t unit = text[at].unicode();
        if (!needsEscape(text, at))
            result += text[at];
        else if (unit < 0x80)
            result += u"%%1"_s.arg(unit, 2, 16, QChar(u'0'));
        else
            result += u"%u%1"_s.arg(unit, 4, 16, QChar(u'0'));
    }
    return result;
}

/// The character unit that `count` hexadecimal digits from `at` on stand for.
std::optional<char16_t> unitAt(const QString &text, qsizetype at, qsizetype count)
{
    const QStringView digits = QStringView(text).mid(at, count);
    const bool allDigits = std::all_of(digits.begin(), digits.end(), [](QChar c) {
        return c.unicode() < 0x80 && std::isxdigit(c.unicode());
    });
    if (digits.size() != count || !allDigits)
        return std::nullopt;
    return char16_t(digits.toUShort(nullptr, 16));
}

QString unescaped(const QString &text)
{
    QString result;
    for (qsizetype at = 0; at < text.size(); ++at) {
        const bool wide = text.mid(at, 2) == "%u"_L1;
        const qsizetype count = wide ? 4 : 2;
        const auto unit =
            text[at] == u'%' ? unitAt(text, at + (wide ? 2 : 1), count) : std::nullopt;
        result += unit ? QChar(*unit) : text[at]; // else one written by hand
        at += unit ? count + (wide ? 1 : 0) : 0;
    }
    return result;
}

bool isSame(const QString &line, const QString &wanted)
{
    return unescaped(line.trimmed()).compare(wanted, Qt::CaseInsensitive) == 0;
}

bool isSection(const QString &line)
{
    return line.startsWith(u'[') && line.endsWith(u']');
}

bool isComment(const QString &line)
{
    return line.startsWith(u';') || line.startsWith(u'#');
}

} // namespace

IniText::IniText(const QByteArray &bytes, const QString &name)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(bytes);
    if (decoder.hasError())
        throw QvError(PathFileAccess, {},
                      u"The settings file %1 cannot be read: it is not UTF-8 text"_s.arg(name));
    for (const QString &line : text.split(u'\n'))
        m_lines.append(line.trimmed());
    while (!m_lines.isEmpty() && m_lines.last().isEmpty())
        m_lines.removeLast();
}

IniText::Place IniText::find(const QString &section, const QString &name) const
{
    Place place;
    bool inside = false;
    for (qsizetype at = 0; at < m_lines.size(); ++at) {
        const QString &line = m_lines[at];
        if (isSection(line))
            inside = isSame(line.sliced(1, line.size() - 2), section);
        if (!inside || line.isEmpty())
            continue;
        place.sectionEnd = at + 1;
        const qsizetype equals = isSection(line) || isComment(line) ? -1 : line.indexOf(u'=');
        if (equals >= 0 && isSame(line.first(equals), name))
            place.line = at;
    }
    return place;
}

std::optional<QString> IniText::value(const QString &section, const QString &name) const
{
    const Place place = find(section, name);
    if (place.line < 0)
        return std::nullopt;
    const QString &line = m_lines[place.line];
    return unescaped(line.sliced(line.indexOf(u'=') + 1).trimmed());
}

void IniText::setValue(const QString &section, const QString &name, const QString &value)
{
    const QString line = escaped(name) + u'=' + escaped(value);
    const Place place = find(section, name);
    if (place.line >= 0)
        m_lines[place.line] = line;
    else if (place.sectionEnd >= 0)
        m_lines.insert(place.sectionEnd, line);
    else
        m_lines << u'[' + escaped(section) + u']' << line;
}

QByteArray IniText::bytes() const
{
    return (m_lines.join(u'\n') + u'\n').toUtf8();
}
