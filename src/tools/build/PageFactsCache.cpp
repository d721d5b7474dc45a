#include "tools/build/PageFactsCache.h"

#include "tools/Checksum.h"
#include "tools/build/PackedBytes.h"

#include <QtEndian>

#include <algorithm>
#include <array>

namespace {

constexpr std::string_view magic = "QVPageFacts 1\n"; // another number when anything changes
constexpr size_t manyItems = 65'536;
constexpr size_t headSize = magic.size() + sizeof(quint64);

/// Writes the facts of one page. Spans and lines follow each other, so only steps are written.
class FactsWriter final
{
public:
    FactsWriter(PackedWriter &out, const PageFacts &facts)
        : m_out(out)
        , m_facts(facts)
    {
    }

    void write()
    {
        m_out.text(m_facts.text);
        span(m_facts.title);
        span(m_facts.language);
        m_out.number(m_facts.hasBase ? 1 : 0);
        all(m_facts.refs, [this](const PageRef &ref) {
            m_out.number(static_cast<quint64>(ref.kind) * 8 + static_cast<quint64>(ref.place));
            line(ref.line);
            m_out.number(ref.target);
            span(ref.written);
            span(ref.anchor);
        });
        all(m_facts.anchors, [this](const PageAnchor &anchor) {
            m_out.number(anchor.isId ? 1 : 0);
            line(anchor.line);
            span(anchor.name);
        });
        all(m_facts.headings, [this](const PageHeading &heading) {
            m_out.number(heading.level);
            line(heading.line);
            span(heading.text);
        });
        all(m_facts.linkIds, [this](const PublishedLink &link) {
            line(link.line);
            span(link.name);
            span(link.anchor);
        });
        all(m_facts.faults, [this](const FoundFault &fault) {
            m_out.number(static_cast<quint64>(fault.fault));
            line(fault.line);
            span(fault.detail);
        });
    }

private:
    template <typename Items, typename WriteOne>
    void all(const Items &items, WriteOne writeOne)
    {
        m_out.number(items.size());
        m_line = 0;
        for (const auto &item : items)
            writeOne(item);
    }
    void line(quint32 value)
    {
        m_out.step(qint64(value) - m_line);
        m_line = value;
    }
    void span(TextSpan value)
    {
        m_out.step(qint64(value.start) - m_end);
        m_out.number(value.length);
        m_end = qint64(value.start) + value.length;
    }

    PackedWriter &m_out;
    const PageFacts &m_facts;
    qint64 m_line = 0, m_end = 0;
};

/// Reads them back and takes nothing that could not have been written.
class FactsReader final
{
public:
    FactsReader(PackedReader &in, size_t targets)
        : m_in(in)
        , m_targets(targets)
    {
    }

    PageFacts read()
    {
        PageFacts facts;
        facts.text = m_in.text();
        m_size = static_cast<qint64>(facts.text.size());
        facts.title = span();
        facts.language = span();
        facts.hasBase = m_in.numberBelow(2) == 1;
        all(facts.refs, [this] { return ref(); });
        all(facts.anchors, [this] {
            const bool isId = m_in.numberBelow(2) == 1;
            const quint32 at = line();
            return PageAnchor{span(), at, isId};
        });
        all(facts.headings, [this] {
            const auto level = static_cast<quint8>(m_in.numberBelow(7));
            const quint32 at = line();
            return PageHeading{span(), at, level};
        });
        all(facts.linkIds, [this] {
            const quint32 at = line();
            const TextSpan name = span();
            return PublishedLink{name, at, span()};
        });
        all(facts.faults, [this] {
            const auto fault = m_in.numberBelow(quint64(PageFault::NulCharacter) + 1);
            const quint32 at = line();
            return FoundFault{static_cast<PageFault>(fault), at, span()};
        });
        return facts;
    }

private:
    PageRef ref()
    {
        const quint64 kinds = quint64(PageReference::Kind::Style) + 1;
        const quint64 what = m_in.numberBelow(kinds * 8);
        PageRef read;
        read.kind = static_cast<PageReference::Kind>(what / 8);
        if (what % 8 > quint64(RefPlace::LinkID))
            m_in.fail();
        read.place = static_cast<RefPlace>(what % 8);
        read.line = line();
        read.target = static_cast<quint32>(m_in.numberBelow(std::max<size_t>(m_targets, 1)));
        read.written = span();
        read.anchor = span();
        return read;
    }
    template <typename Items, typename ReadOne>
    void all(Items &items, ReadOne readOne)
    {
        const size_t count = m_in.count();
        items.reserve(std::min(count, manyItems)); // a damaged count must not take all memory
        m_line = 0;
        for (size_t i = 0; i < count && m_in.isGood(); ++i)
            items.push_back(readOne());
    }
    quint32 line()
    {
        m_line += boundedStep();
        if (m_line < 0 || m_line > m_limit)
            m_in.fail();
        return static_cast<quint32>(m_line);
    }
    TextSpan span()
    {
        const qint64 start = m_end + boundedStep();
        const auto length = static_cast<qint64>(m_in.numberBelow(quint64(m_size) + 1));
        if (start < 0 || start + length > m_size) {
            m_in.fail();
            return {};
        }
        m_end = start + length;
        return {static_cast<quint32>(start), static_cast<quint32>(length)};
    }
    qint64 boundedStep()
    {
        const qint64 step = m_in.step();
        return step >= -m_limit && step <= m_limit ? step : m_limit * 2;
    }

    static constexpr qint64 m_limit = 0xFFFFFFFF;
    PackedReader &m_in;
    size_t m_targets;
    qint64 m_size = 0, m_line = 0, m_end = 0;
};

} // namespace

KnownPagesWriter::KnownPagesWriter(std::string_view project, std::string_view language,
                                   const std::vector<std::string> &targets)
    : m_out(headSize)
{
    m_out.text(project);
    m_out.text(language);
    m_out.number(targets.size());
    for (const std::string &target : targets)
        m_out.text(target);
}

void KnownPagesWriter::add(const PageStamp &stamp, const PageFacts &facts)
{
    m_out.text(stamp.path);
    m_out.step(stamp.size);
    m_out.step(stamp.modified);
    m_out.step(stamp.readAt);
    m_out.number(stamp.sum);
    FactsWriter(m_out, facts).write();
}

QByteArray KnownPagesWriter::file()
{
    const std::string &bytes = m_out.bytes();
    std::array<char, sizeof(quint64)> sum;
    qToLittleEndian(checksum(std::string_view(bytes).substr(headSize)), sum.data());
    m_out.setHead(std::string(magic) + std::string(sum.data(), sum.size()));
    return QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

std::optional<KnownPages> readKnownPages(std::string_view bytes)
{
    if (bytes.size() < headSize || !bytes.starts_with(magic))
        return {};
    const std::string_view body = bytes.substr(headSize);
    if (qFromLittleEndian<quint64>(bytes.data() + magic.size()) != checksum(body))
        return {};
    PackedReader in(body);
    KnownPages known;
    known.project = in.text();
    known.language = in.text();
    for (size_t left = in.count(); left > 0 && in.isGood(); --left)
        known.targets.emplace_back(in.text());
    while (in.isGood() && !in.atEnd()) {
        PageStamp stamp{std::string(in.text()), in.step(), in.step(), in.step(), in.number()};
        known.pages.push_back({std::move(stamp), FactsReader(in, known.targets.size()).read()});
    }
    return in.isGood() ? std::optional(std::move(known)) : std::nullopt;
}
