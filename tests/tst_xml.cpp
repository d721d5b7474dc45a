#include "platform/Xml.h"
#include "platform/XmlCheck.h"
#include "platform/XmlTokens.h"
#include "support/Errors.h"
#include "support/System.h"
#include "support/TestProgram.h"

#include <QStringEncoder>
#include <QTest>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

namespace {

constexpr auto path = "S:\\Toc.xml"_L1;

QByteArray utf16(const QString &text, QStringConverter::Encoding encoding, bool mark)
{
    QStringEncoder encoder(encoding,
                           mark ? QStringEncoder::Flag::WriteBom : QStringEncoder::Flag::Default);
    return encoder.encode(text);
}

/// "" when the reader takes the bytes, else the error as an author sees it.
QString refusal(const QByteArray &bytes)
{
    return errorOf([&] { (void)parseXml(bytes, path, "R"); });
}

QString startOf(int depth, const QString &name, QStringList attributes)
{
    attributes.sort();
    return u"%1<%2 %3>"_s.arg(depth).arg(name, attributes.join(u' '));
}

/// All that our reader tells of a text; "refused" when it is not well formed.
QString told(const QString &text)
{
    QString all;
    const auto read = [&] {
        XmlTokens tokens(text);
        for (auto kind = tokens.next(); kind != XmlTokens::Kind::End; kind = tokens.next()) {
            QStringList attributes;
            for (const QString &name : {u"a"_s, u"b"_s, u"y"_s, u"ü"_s}) {
                if (const QString value = tokens.attribute(name); !value.isNull())
                    attributes += name + u'=' + value;
            }
            if (kind == XmlTokens::Kind::StartElement)
                all += startOf(tokens.depth(), tokens.name().toString(), attributes);
            else if (kind == XmlTokens::Kind::EndElement)
                all += u"%1</%2>"_s.arg(tokens.depth()).arg(tokens.name());
            else
                all += tokens.text();
        }
    };
    return isXmlText(text) && errorOf(read).isEmpty() ? all : u"refused"_s;
}

/// The same as an established reader tells it.
QString toldByQt(const QString &text)
{
    if (!isXmlText(text))
        return u"refused"_s;
    QString all;
    QXmlStreamReader reader(text);
    reader.setNamespaceProcessing(false);
    for (int depth = 0; !reader.atEnd();) {
        QStringList attributes;
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            for (const QXmlStreamAttribute &attribute : reader.attributes()) {
                if (QStringList{u"a"_s, u"b"_s, u"y"_s, u"ü"_s}.contains(attribute.qualifiedName()))
                    attributes += u"%1=%2"_s.arg(attribute.qualifiedName(), attribute.value());
            }
            all += startOf(++depth, reader.qualifiedName().toString(), attributes);
            break;
        case QXmlStreamReader::EndElement:
            all += u"%1</%2>"_s.arg(depth--).arg(reader.qualifiedName());
            break;
        case QXmlStreamReader::Characters:
            if (depth > 0)
                all += reader.text();
            break;
        case QXmlStreamReader::DTD:
            return u"refused"_s;
        default:
            break;
        }
    }
    return reader.hasError() ? u"refused"_s : all;
}

} // namespace

class tst_xml final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void decodes();
    void refuses();
    void readsWhatAnotherReaderReads();
    void partsWithTheOtherReader();
    void refusesBombsAtOnce();
    void saysWhichFileAndWhy();
    void rewritingKeepsEverything();
    void textsComeBackAsTheyWereSet();
};

void tst_xml::decodes()
{
    const QString text = u"<?xml version=\"1.0\" encoding=\"utf-16\"?>\r\n<R>ä日\U0001F600</R>"_s;
    QString utf8 = text;
    utf8.replace(u"utf-16"_s, u"utf-8"_s);
    const QByteArray gb = QByteArray("<?xml version='1.0' encoding='GB18030'?><R>")
                          + QByteArray::fromHex("81308A31C8D59439FC36") + "</R>";
    QList<QByteArray> all{utf16(text, QStringConverter::Utf16LE, true),
                          utf16(text, QStringConverter::Utf16BE, true),
                          utf16(text, QStringConverter::Utf16LE, false),
                          utf16(text, QStringConverter::Utf16BE, false),
                          utf8.toUtf8(),
                          "\xEF\xBB\xBF" + utf8.toUtf8(),
                          utf8.section(u"\r\n"_s, 1).toUtf8(), // nothing declared
                          utf16(utf8, QStringConverter::Utf16LE, true)};
    if (here::hasCharset("GB18030"))
        all.append(gb);
    for (const QByteArray &bytes : all) {
        const pugi::xml_document document = parseXml(bytes, path, "R");
        QCOMPARE(textOf(document.document_element()), u"ä日\U0001F600"_s);
    }
}

void tst_xml::refuses()
{
    const auto row = [](const char *name, const QByteArray &bytes, const QString &reason) {
        const QString error = refusal(bytes);
        QVERIFY2(error.startsWith(u"75: S:\\Toc.xml cannot be read: "_s), name);
        QVERIFY2(error.contains(reason), name);
    };
    const QByteArray whole = utf16(u"<R>text</R>"_s, QStringConverter::Utf16LE, true);
    row("empty", {}, u"it is empty"_s);
    row("half a character", whole + "x", u"half a character"_s);
    row("cut", whole.chopped(8), u"line 1: "_s);
    row("zeros", QByteArray(400, '\0'), u"damaged"_s);
    row("two marks", "\xFF\xFE" + whole, u"two byte-order marks"_s);
    row("UTF-32", QByteArray::fromHex("FFFE00003C000000"), u"UTF-32"_s);
    row("lone surrogate", QByteArray(whole).replace(8, 2, "\x3D\xD8"), u"damaged"_s);
    row("not UTF-8", "<R>\xC3\x28</R>", u"not valid UTF-8"_s);
    row("only said to be UTF-16", "<?xml version='1.0' encoding='utf-16'?><R/>", u"says utf-16"_s);
    row("unknown encoding", "<?xml version='1.0' encoding='x-nil'?><R/>",
        u"\"x-nil\" is not known"_s);
    row("not us-ascii", "<?xml version='1.0' encoding='us-ascii'?><R>\xE4</R>", u"us-ascii"_s);
    row("control character", "<R>\x01</R>", u"damaged"_s);
    row("same attribute twice", "<R>\n<A b='1' b='2'/></R>",
        u"line 2: the attribute \"b\" stands twice"_s);
    row("undeclared entity", "<R>&nbsp;</R>", u"line 1: a \"&\" begins no reference"_s);
    row("two roots", "<R/><R/>", u"line 1: a second root"_s);
    row("DOCTYPE", "<!-- > --><?a b?><!DOCTYPE R [<!ENTITY x 'y'>]><R>&x;</R>", u"has a DOCTYPE"_s);
    row("DOCTYPE behind the root", "<R/><!DOCTYPE R>", u"has a DOCTYPE"_s);
    row("other root", "<r/>", u"its root is \"r\" instead of \"R\""_s);
    row("namespace", "<R xmlns='urn:x'/>", u"in a namespace"_s);
    row("too deep", QByteArray("<R>") + QByteArray("<A>").repeated(64), u"more than 64 deep"_s);
}

// Damages small files in every place; both readers tell the same of each, or both refuse it.
void tst_xml::readsWhatAnotherReaderReads()
{
    const QStringList whole{
        u"<?xml version=\"1.0\" encoding=\"utf-16\" standalone='yes'?>\r\n<!-- c - d -->\r\n<?p "
        u"i?>\n"
        "<LINKS a=\"1\" b = 'x&amp;&#65;\t\r\n'>\r\n\t<ID y=''>t&lt;ü\r</ID>\n<e/> ]] > "
        "<![CDATA[<&\r\n]]]>\n<?q?><f b='1' a=\"'\" /></LINKS >\n<!---->\n"_s,
        u"<R>日<a.b-c_d1/>&#x1F600;\U0001F600&#xAA;&#13;</R>"_s, u"<ä ü='&#13;&#9;'><ö/></ä>"_s};
    const QStringList pieces = u"< > & ; \" ' = / ! ? - [ ] # x 1 ä -- ]]> <!----> &#0; &#xD800; "
                               "&#x110000; &#xFFFF; &gt; &lt <a/> </a> <?xml?> <?XmL&?> "
                               "<![CDATA[]]> \r \n"_s.split(u' ')
                               << u" "_s << u"<?xml version='1.0'?>"_s << u"<!DOCTYPE a>"_s;
    int accepted = 0;
    QString firstDifference;
    const auto compare = [&](const QString &text) {
        const QString expected = toldByQt(text);
        accepted += expected != u"refused"_s;
        if (firstDifference.isEmpty() && told(text) != expected)
            firstDifference = u"%1\n%2\n%3"_s.arg(text, told(text), expected);
    };
    for (const QString &text : whole) {
        compare(text);
        for (qsizetype at = 0; at < text.size(); ++at) {
            compare(text.first(at));
            compare(text.first(at) + text.sliced(at + 1));
            for (const QString &piece : pieces) {
                compare(text.first(at) + piece + text.sliced(at));
                compare(text.first(at) + piece + text.sliced(at + 1));
            }
        }
    }
    QCOMPARE(firstDifference, QString());
    QVERIFY(accepted > 3'000);
}

// Where ours and the other reader part on purpose: it lets other characters into names, and "0x"
// into references.
void tst_xml::partsWithTheOtherReader()
{
    for (const QString &text :
         {u"<:R :='' a:=''/>"_s, u"<R\U0001F600/>"_s, u"<?\U0001F600 x?><R/>"_s}) {
        QCOMPARE(toldByQt(text), u"refused"_s);
        QVERIFY2(told(text) != u"refused"_s, qPrintable(text));
    }
    QStringList laxer{u"<R>&#x0x41;</R>"_s};
    for (const QString &name : {u"a×"_s, u"×"_s, u"a{"_s, u"a@"_s, u"a\u0085"_s, u"\u0300"_s})
        laxer += u"<R %1=''/>"_s.arg(name);
    for (const QString &text : laxer) {
        QVERIFY2(toldByQt(text) != u"refused"_s, qPrintable(text));
        QCOMPARE(told(text), u"refused"_s);
    }
}

void tst_xml::refusesBombsAtOnce()
{
    QVERIFY(refusal("<R>" + QByteArray("<A>").repeated(2'000'000)).contains(u"64 deep"_s));
    QVERIFY(
        refusal("<!DOCTYPE x [" + QByteArray("<!x [").repeated(500'000)).contains(u"DOCTYPE"_s));
    QCOMPARE(refusal(QByteArray("<R>") + QByteArray("<A>").repeated(63)
                     + QByteArray("</A>").repeated(63) + "</R>"),
             QString());
    QCOMPARE(refusal("<R><p:A q:b='1'/></R>"), QString());
}

void tst_xml::saysWhichFileAndWhy()
{
    const TestProgram world;
    FileSystem &files = world.program.files;
    const auto load = [&] { (void)loadXml(files, path, "QV_Master"); };
    QCOMPARE(errorOf(load), u"53: File not found: S:\\Toc.xml"_s);
    files.replaceFile(path, "<QV_Master>\n<a>\n</QV_Master>");
    QCOMPARE(errorOf(load), u"75: S:\\Toc.xml cannot be read: line 3: "
                            "\"a\" should end here, not \"QV_Master\""_s);
    const auto readTokens = [&] { readXmlTokens(readXmlText(files, path), path, [](auto &) {}); };
    QCOMPARE(errorOf(readTokens), errorOf(load));
    files.removeFile(path);
    files.makeFolder(path);
    QCOMPARE(errorOf(load), u"75: S:\\Toc.xml cannot be read: it is not a regular file"_s);
}

void tst_xml::rewritingKeepsEverything()
{
    const QString text = u"<?xml version=\"1.0\" encoding=\"utf-16\"?>\r\n"
                         "<!-- first\r\n     second -->\r\n"
                         "<?keep both\r\n\tlines?>\r\n"
                         "<R a=\"1&#10;2 &quot;&lt;&amp;\">\r\n"
                         "\t<Unknown x:y=\"\">\r\n"
                         "\t\t<!-- inside -->\r\n"
                         "\t\t<blank> </blank>\r\n"
                         "\t\t<lines>one\r\ntwo&#13;three</lines>\r\n"
                         "\t\t<mixed> a <b /> c </mixed>\r\n"
                         "\t\t<data><![CDATA[<x> & ]]></data>\r\n"
                         "\t</Unknown>\r\n"
                         "</R>\r\n"
                         "<!-- end -->\r\n"_s;
    const QByteArray bytes = utf16(text, QStringConverter::Utf16LE, true);
    const TestProgram world;
    FileSystem &files = world.program.files;
    files.replaceFile(path, bytes);
    saveXml(files, path, loadXml(files, path, "R"));
    QCOMPARE(files.readFile(path), bytes);

    QString other = text;
    other.replace(u"utf-16"_s, u"utf-8"_s).replace(u"\r\n"_s, u"\n"_s);
    QCOMPARE(xmlBytes(parseXml(other.toUtf8(), path, "R")), bytes);
}

void tst_xml::textsComeBackAsTheyWereSet()
{
    pugi::xml_document document;
    pugi::xml_node root = document.append_child("R");
    const QString odd = u" <a> & \"b\" 'c'\r\n\td\n]]> \U0001F600 "_s;
    appendText(root, "A", odd);
    setAttribute(root, "b", odd);
    appendText(root, "C", u"old"_s);
    setText(root.child("C"), u""_s);

    const pugi::xml_document again = parseXml(xmlBytes(document), path, "R");
    const pugi::xml_node read = again.document_element();
    QCOMPARE(textOf(read.child("A")), odd);
    QCOMPARE(valueOf(read.attribute("b")), odd);
    QCOMPARE(textOf(read.child("C")), QString());

    const QString unwritable = u"5: A text holds characters that no XML file may hold"_s;
    QCOMPARE(errorOf([&] { setText(root, u"a\u0001"_s); }), unwritable);
    QCOMPARE(errorOf([&] { setAttribute(root, "x", QString(QChar(0xD83D))); }), unwritable);
    QVERIFY(errorOf([&] { setText(root.child("D"), u"x"_s); }).startsWith(u"91: "_s));
    QVERIFY(errorOf([] { utf16Bytes(QString(QChar(0xDC00))); }).startsWith(u"5: "_s));
}

QTEST_GUILESS_MAIN(tst_xml)
#include "tst_xml.moc"
