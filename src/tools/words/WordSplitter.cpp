#include "tools/words/WordSplitter.h"

#include <QList>
#include <QString>

namespace {

constexpr bool isConnector(char32_t code)
{
    return code == U'-' || code == U'.' || code == U'_';
}

} // namespace

const char *WordSplitter::readPart(const char *at, const char *end)
{
    const size_t limit = m_size + longest;
    while (at != end) {
        if (const char small = lowered(*at)) {
            if (m_size < limit)
                m_buffer[m_size++] = small;
            ++at;
            continue;
        }
        if (static_cast<unsigned char>(*at) < 0x80)
            break;
        const Utf8Character here = utf8At(at, end);
        const LetterKind kind = m_letters.kind(here.code);
        if (kind != LetterKind::Part && kind != LetterKind::Ignored)
            break;
        if (kind == LetterKind::Part && m_size < limit - 3)
            put(m_letters.folded(here.code));
        at += here.length;
    }
    return at;
}

void WordSplitter::put(char32_t code)
{
    m_run.clear();
    appendUtf8(m_run, code);
    for (const char byte : m_run)
        m_buffer[m_size++] = byte;
}

int WordSplitter::connectorAt(const char *at, const char *end) const
{
    if (at == end)
        return 0;
    const Utf8Character here = utf8At(at, end);
    if (!isConnector(here.code < 0x80 ? here.code : m_letters.folded(here.code)))
        return 0;
    const char *const next = at + here.length;
    const bool goesOn = next != end && m_letters.kind(utf8At(next, end).code) == LetterKind::Part;
    return goesOn ? here.length : 0;
}

std::string_view WordSplitter::signAt(const char *at, const char *end)
{
    const std::string_view rest(at, static_cast<size_t>(end - at));
    const std::string_view sign = rest.starts_with("++")  ? rest.substr(0, 2)
                                  : rest.starts_with('#') ? rest.substr(0, 1)
                                                          : std::string_view();
    const bool goesOn = sign.size() < rest.size() && lowered(rest[sign.size()]) != 0;
    return goesOn ? std::string_view() : sign;
}

const char *WordSplitter::readRun(const char *at, const char *end)
{
    m_run.clear();
    m_starts.assign(1, 0);
    bool composes = false;
    while (at != end) {
        const Utf8Character here = utf8At(at, end);
        const LetterKind kind = m_letters.kind(here.code);
        if (kind == LetterKind::Gap || kind == LetterKind::Part)
            break;
        at += here.length;
        if (kind == LetterKind::Ignored)
            continue;
        composes |= kind == LetterKind::Composing;
        m_last = here.code;
        appendUtf8(m_run, m_letters.folded(here.code));
        m_starts.push_back(static_cast<quint32>(m_run.size()));
    }
    if (composes)
        compose();
    return at;
}

void WordSplitter::compose()
{
    const QString run = QString::fromUtf8(m_run.data(), static_cast<qsizetype>(m_run.size()))
                            .normalized(QString::NormalizationForm_C);
    m_run.clear();
    m_starts.assign(1, 0);
    for (const uint code : run.toUcs4()) {
        appendUtf8(m_run, code);
        m_starts.push_back(static_cast<quint32>(m_run.size()));
    }
}

bool WordSplitter::putNextLine(const char *at, const char *end)
{
    if (end - at < 2 || *at != ' ' || m_starts.size() < 2 || !isWrittenOn(m_last))
        return false;
    const char32_t next = utf8At(at + 1, end).code;
    if (!isWrittenOn(next) || m_letters.kind(next) != LetterKind::Paired)
        return false;
    appendUtf8(m_run, m_letters.folded(next));
    return true;
}
