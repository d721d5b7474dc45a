// Feeds the page scanner, the encodings, style sheets and the cache of page facts with anything,
// and stops when the two forms of the scanner disagree, when a result points outside its page, or
// when what was kept reads back as something else.

#include "tools/Checksum.h"
#include "tools/build/PageFactsCache.h"
#include "tools/build/PageScan.h"
#include "tools/html/HtmlTokens.h"

#include <QtEndian>

#include <cstdlib>

namespace {

using TextTokens = BasicHtmlTokens<QStringView>;

void insist(bool holds)
{
    if (!holds)
        std::abort();
}

std::string_view view(const QByteArray &bytes)
{
    return {bytes.constData(), size_t(bytes.size())};
}

/// Both cut the same pieces out of text in which a byte is a character.
void compareForms(const QByteArray &bytes)
{
    QByteArray ascii = bytes;
    for (char &c : ascii)
        c = static_cast<char>(c & 0x7F);
    const QString text = QString::fromLatin1(ascii);
    PageTokens ours(view(ascii));
    TextTokens theirs{QStringView(text)};
    qsizetype last = 0;
    while (true) {
        const auto &a = ours.next();
        const auto &b = theirs.next();
        insist(int(a.kind) == int(b.kind) && a.start == b.start && a.tag == b.tag);
        insist(qsizetype(a.text.size()) == b.text.size() && a.selfClosing == b.selfClosing);
        insist(a.attributes.size() == b.attributes.size() && a.start >= last);
        for (size_t i = 0; i < a.attributes.size(); ++i)
            insist(qsizetype(a.attributes[i].value.size()) == b.attributes[i].value.size()
                   && a.attributes[i].key == b.attributes[i].key);
        last = a.start;
        if (a.kind == PageToken::Kind::End)
            return;
    }
}

void look(const PageFacts &facts, TextSpan span)
{
    insist(span.start <= facts.text.size() && span.length <= facts.text.size() - span.start);
}

void checkSpans(const PageFacts &facts)
{
    look(facts, facts.title);
    look(facts, facts.language);
    for (const PageRef &ref : facts.refs) {
        look(facts, ref.written);
        look(facts, ref.anchor);
    }
    for (const PageAnchor &anchor : facts.anchors)
        look(facts, anchor.name);
    for (const PageHeading &heading : facts.headings)
        look(facts, heading.text);
    for (const PublishedLink &link : facts.linkIds)
        look(facts, link.name);
    for (const FoundFault &fault : facts.faults)
        look(facts, fault.detail);
}

void scan(const QByteArray &bytes)
{
    TargetTable table;
    PageScan scanner({QStringLiteral("Plant"), QStringLiteral("JPN")}, table);
    ReadablePage text;
    const PageFacts sheet = scanner.styleSheet(bytes, "Book_A/a.css");
    checkSpans(sheet);
    const PageFacts page = scanner.page(bytes, "Book_A/sub/a.htm", &text);
    checkSpans(page);
    quint32 end = 0;
    for (const ReadablePage::Run &run : text.runs) {
        insist(run.start == end && run.length > 0);
        end += run.length;
    }
    insist(end == text.text.size());

    KnownPagesWriter writer("Plant", "JPN", table.take());
    writer.add({"Book_A/sub/a.htm", bytes.size(), -1, 1, checksum(view(bytes))}, page);
    const QByteArray file = writer.file();
    const auto known = readKnownPages(view(file));
    insist(known && known->pages.size() == 1 && known->pages[0].facts.text == page.text);
    insist(known->pages[0].facts.refs.size() == page.refs.size());
}

/// Damage that even has the right checksum.
void readCache(const QByteArray &bytes)
{
    KnownPagesWriter empty({}, {}, {});
    constexpr qsizetype head = 14;
    const quint64 sum = qToLittleEndian(checksum(view(bytes)));
    const QByteArray file = empty.file().first(head)
                            + QByteArray(reinterpret_cast<const char *>(&sum), sizeof(sum)) + bytes;
    if (const auto known = readKnownPages(view(file))) {
        for (const KnownPage &page : known->pages)
            checkSpans(page.facts);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), qsizetype(size));
    compareForms(bytes);
    scan(bytes);
    readCache(bytes);
    return 0;
}
