#include "projectfiles/KeyWordFile.h"

#include "platform/Paths.h"
#include "platform/Xml.h"
#include "projectfiles/Backup.h"
#include "projectfiles/FileElements.h"

namespace {

constexpr auto rootName = "QV_SearchKeyWords";

QString pathIn(Session &session, const QString &project)
{
    return projectFolder(session.serverPath, project) + ProjectFile::keyWords;
}

KeyWord::Page readPage(const pugi::xml_node &page)
{
    return {valueOf(page.attribute("Book")), valueOf(page.attribute("Page"))};
}

KeyWord readKeyWord(const pugi::xml_node &element)
{
    KeyWord keyWord{.text = textOf(element.child("KeyWord_Text")),
                    .origin = valueOf(element.attribute("Origin")),
                    .synonyms = textsOf(element, "KeyWord_Synonym"),
                    .pages = {}};
    for (const pugi::xml_node &page : element.children("KeyWord_Page"))
        keyWord.pages.append(readPage(page));
    return keyWord;
}

QString keyOf(const QString &origin, const QString &text)
{
    return origin + u'|' + text;
}

QString pageKey(const KeyWord::Page &page)
{
    return page.book + u'|' + page.page;
}

void writeKeyWord(pugi::xml_node element, const KeyWord &keyWord)
{
    setAttribute(element, "Origin", keyWord.origin);
    setChild(element, "KeyWord_Text", keyWord.text);
    while (element.remove_child("KeyWord_Synonym")) {
    }
    for (const QString &synonym : keyWord.synonyms)
        appendText(element, "KeyWord_Synonym", synonym);
    RewrittenList pages(element, "KeyWord_Page",
                        [](const pugi::xml_node &old) { return pageKey(readPage(old)); });
    for (const KeyWord::Page &page : keyWord.pages) {
        const pugi::xml_node place = pages.place(pageKey(page));
        setAttribute(place, "Book", page.book);
        setAttribute(place, "Page", page.page);
    }
    pages.removeRest();
}

pugi::xml_document loadOrMake(FileSystem &files, const QString &path, const QString &language)
{
    if (files.exists(path))
        return loadXml(files, path, rootName);
    pugi::xml_document document;
    setAttribute(document.append_child(rootName), "Language", language);
    return document;
}

} // namespace

QList<KeyWord> readKeyWords(Session &session, FileSystem &files, const QString &project)
{
    const QString path = pathIn(session, project);
    if (!files.exists(path))
        return {};
    const pugi::xml_document document = loadXml(files, path, rootName);
    QList<KeyWord> keyWords;
    for (const pugi::xml_node &element : document.document_element().children("KeyWord"))
        keyWords.append(readKeyWord(element));
    return keyWords;
}

void writeKeyWords(Session &session, FileSystem &files, const QString &project,
                   const QList<KeyWord> &keyWords)
{
    const QString path = pathIn(session, project);
    const pugi::xml_document document = loadOrMake(files, path, session.projectLanguage);
    RewrittenList list(document.document_element(), "KeyWord", [](const pugi::xml_node &old) {
        return keyOf(valueOf(old.attribute("Origin")), textOf(old.child("KeyWord_Text")));
    });
    for (const KeyWord &keyWord : keyWords)
        writeKeyWord(list.place(keyOf(keyWord.origin, keyWord.text)), keyWord);
    list.removeRest();
    backUp(files, projectFolder(session.serverPath, project), ProjectFile::keyWords);
    saveXml(files, path, document);
}
