#include "controls/pages/HtmlHighlighter.h"

#include "controls/pages/LongLines.h"

#include <QPalette>
#include <QTextDocument>

using namespace Qt::StringLiterals;

namespace {

/// Where the end of a line leaves off. The two raw states say which end tag they wait for; a tag
/// that will open one carries the same in its upper bits.
enum State { Text, InComment, InDeclaration, InTag, InSingle, InDouble, InRaw };
constexpr int stateBits = 0xf;
constexpr int script = 0x10;
constexpr int style = 0x20;

/// A colour of this hue that can be read on the palette's background.
QColor readable(int hue, const QPalette &palette)
{
    const bool dark = palette.color(QPalette::Base).lightness() < 128;
    return QColor::fromHsl(hue, dark ? 160 : 220, dark ? 180 : 85);
}

bool isNameCharacter(QChar c)
{
    return !c.isSpace() && c != u'/' && c != u'>' && c != u'=';
}

} // namespace

HtmlHighlighter::HtmlHighlighter(QTextDocument *document, const QPalette &palette)
    : QSyntaxHighlighter(document)
{
    makeFormats(palette);
}

void HtmlHighlighter::usePalette(const QPalette &palette)
{
    makeFormats(palette);
    rehighlight();
}

void HtmlHighlighter::makeFormats(const QPalette &palette)
{
    m_formats[Tag].setForeground(readable(215, palette));
    m_formats[Attribute].setForeground(readable(25, palette));
    m_formats[Value].setForeground(readable(130, palette));
    m_formats[Entity].setForeground(readable(290, palette));
    m_formats[Raw].setForeground(readable(180, palette));
    m_formats[Comment].setForeground(palette.color(QPalette::PlaceholderText));
    m_formats[Comment].setFontItalic(true);
}

void HtmlHighlighter::colour(qsizetype from, qsizetype to, Look look)
{
    if (to <= from)
        return;
    const int start = static_cast<int>(from), length = static_cast<int>(to - from);
    if (m_isAside)
        m_aside.append({start, length, m_formats.at(look)});
    else
        setFormat(start, length, m_formats.at(look));
}

void HtmlHighlighter::highlightBlock(const QString &line)
{
    m_state = qMax(0, previousBlockState());
    m_isAside = LongLines::isPlain(line);
    m_aside.clear();
    if (line.size() > longestLine)
        m_state = Text;
    else
        scan(line);
    setCurrentBlockState(m_state);
    if (m_isAside || currentBlockUserData() != nullptr)
        keepAside();
}

// The layout does not know that other colours are to be shown.
void HtmlHighlighter::keepAside()
{
    const auto *before = static_cast<const LineColours *>(currentBlockUserData());
    const bool changed = before != nullptr && before->ranges != m_aside;
    setCurrentBlockUserData(m_isAside ? new LineColours(m_aside) : nullptr);
    if (changed)
        Q_EMIT document()->documentLayout()->updateBlock(currentBlock());
}

void HtmlHighlighter::scan(QStringView line)
{
    qsizetype at = 0;
    while (at < line.size()) {
        switch (m_state & stateBits) {
        case InComment:
            at = inComment(line, at);
            break;
        case InDeclaration:
            at = inDeclaration(line, at);
            break;
        case InTag:
            at = inTag(line, at);
            break;
        case InSingle:
            at = inValue(line, at, u'\'');
            break;
        case InDouble:
            at = inValue(line, at, u'"');
            break;
        case InRaw:
            at = inRaw(line, at);
            break;
        default:
            at = inText(line, at);
        }
    }
}

qsizetype HtmlHighlighter::inText(QStringView line, qsizetype at)
{
    while (at < line.size() && line[at] != u'<' && line[at] != u'&')
        ++at;
    if (at == line.size())
        return at;
    if (line[at] == u'<')
        return openTag(line, at);
    qsizetype end = at + 1;
    while (end < line.size() && end < at + 12
           && (line[end].isLetterOrNumber() || line[end] == u'#'))
        ++end;
    if (end < line.size() && line[end] == u';' && end > at + 1)
        colour(at, end + 1, Entity);
    return end;
}

qsizetype HtmlHighlighter::openTag(QStringView line, qsizetype at)
{
    const QStringView rest = line.sliced(at + 1);
    if (rest.startsWith("!--"_L1)) {
        m_state = InComment;
        colour(at, at + 4, Comment);
        return at + 4;
    }
    if (rest.startsWith(u'!') || rest.startsWith(u'?')) {
        m_state = InDeclaration;
        return at;
    }
    const bool closes = rest.startsWith(u'/');
    qsizetype end = at + (closes ? 2 : 1);
    const qsizetype nameAt = end;
    if (end >= line.size() || !line[end].isLetter())
        return at + 1;
    while (end < line.size() && isNameCharacter(line[end]))
        ++end;
    const QStringView name = line.sliced(nameAt, end - nameAt);
    m_state = InTag;
    if (!closes && name.compare("script"_L1, Qt::CaseInsensitive) == 0)
        m_state |= script;
    if (!closes && name.compare("style"_L1, Qt::CaseInsensitive) == 0)
        m_state |= style;
    colour(at, end, Tag);
    return end;
}

qsizetype HtmlHighlighter::inComment(QStringView line, qsizetype at)
{
    const qsizetype found = line.indexOf("-->"_L1, at);
    const qsizetype end = found < 0 ? line.size() : found + 3;
    colour(at, end, Comment);
    if (found >= 0)
        m_state = Text;
    return end;
}

qsizetype HtmlHighlighter::inDeclaration(QStringView line, qsizetype at)
{
    const qsizetype found = line.indexOf(u'>', at);
    const qsizetype end = found < 0 ? line.size() : found + 1;
    colour(at, end, Comment);
    if (found >= 0)
        m_state = Text;
    return end;
}

qsizetype HtmlHighlighter::inTag(QStringView line, qsizetype at)
{
    const QChar c = line[at];
    if (c == u'>') {
        m_state = m_state > stateBits ? InRaw | (m_state & ~stateBits) : Text;
        colour(at, at + 1, Tag);
        return at + 1;
    }
    if (c == u'"' || c == u'\'') {
        m_state = (m_state & ~stateBits) | (c == u'"' ? InDouble : InSingle);
        colour(at, at + 1, Value);
        return at + 1;
    }
    if (!isNameCharacter(c))
        return at + 1;
    qsizetype end = at;
    while (end < line.size() && isNameCharacter(line[end]))
        ++end;
    const bool unquoted = at > 0 && line[at - 1] == u'=';
    colour(at, end, unquoted ? Value : Attribute);
    return end;
}

qsizetype HtmlHighlighter::inValue(QStringView line, qsizetype at, QChar quote)
{
    const qsizetype found = line.indexOf(quote, at);
    const qsizetype end = found < 0 ? line.size() : found + 1;
    colour(at, end, Value);
    if (found >= 0)
        m_state = (m_state & ~stateBits) | InTag;
    return end;
}

qsizetype HtmlHighlighter::inRaw(QStringView line, qsizetype at)
{
    const auto endTag = m_state & script ? "</script"_L1 : "</style"_L1;
    const qsizetype found = line.indexOf(endTag, at, Qt::CaseInsensitive);
    const qsizetype end = found < 0 ? line.size() : found;
    colour(at, end, Raw);
    if (found >= 0)
        m_state = Text;
    return end;
}
