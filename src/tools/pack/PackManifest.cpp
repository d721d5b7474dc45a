#include "tools/pack/PackManifest.h"

#include "platform/Xml.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr auto rootName = "QV_Package";

QString dateText(qint64 milliseconds)
{
    return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::UTC).toString(Qt::ISODateWithMs);
}

qint64 milliseconds(const QString &text)
{
    return QDateTime::fromString(text, Qt::ISODateWithMs).toMSecsSinceEpoch();
}

// Entries carry the project's name, as they do in the archive.
QString entryText(const PackManifest &manifest, const PackedFile &file)
{
    return manifest.project + u'/' + QString::fromStdString(file.path);
}

void appendFile(pugi::xml_node list, const PackManifest &manifest, const PackedFile &file)
{
    const pugi::xml_node entry = appendText(list, "File", entryText(manifest, file));
    setAttribute(entry, "Size", QString::number(file.size));
    setAttribute(entry, "Sum", u"%1"_s.arg(file.sum, 8, 16, QChar(u'0')));
    setAttribute(entry, "Date", dateText(file.modified));
}

PackedFile readFile(const pugi::xml_node &entry)
{
    const QString path = textOf(entry);
    return {.path = path.sliced(path.indexOf(u'/') + 1).toStdString(),
            .size = valueOf(entry.attribute("Size")).toLongLong(),
            .modified = milliseconds(valueOf(entry.attribute("Date"))),
            .sum = valueOf(entry.attribute("Sum")).toUInt(nullptr, 16)};
}

} // namespace

qint64 PackManifest::date() const
{
    qint64 newest = 0;
    for (const PackedFile &file : files)
        newest = std::max(newest, file.modified);
    return newest;
}

QByteArray manifestBytes(const PackManifest &manifest)
{
    pugi::xml_document document;
    pugi::xml_node root = document.append_child(rootName);
    appendText(root, "Package_Project", manifest.project);
    appendText(root, "Package_ID", manifest.id);
    appendText(root, "Package_Language", manifest.language);
    appendText(root, "Package_Date", dateText(manifest.date()));
    appendText(root, "Package_Method", manifest.method);
    const pugi::xml_node list = root.append_child("Package_Files");
    for (const PackedFile &file : manifest.files)
        appendFile(list, manifest, file);
    return xmlBytes(document);
}

PackManifest readManifest(const QByteArray &bytes, const QString &name)
{
    const pugi::xml_document document = parseXml(bytes, name, rootName);
    const pugi::xml_node root = document.child(rootName);
    PackManifest manifest{.project = textOf(root.child("Package_Project")),
                          .id = textOf(root.child("Package_ID")),
                          .language = textOf(root.child("Package_Language")),
                          .method = textOf(root.child("Package_Method")),
                          .files = {}};
    for (const pugi::xml_node &entry : root.child("Package_Files").children("File"))
        manifest.files.push_back(readFile(entry));
    return manifest;
}
