#pragma once

#include <QString>

#include <optional>

/// What a page refers to, as the page says it.
struct PageReference
{
    enum class Kind {
        Link,     ///< something the reader goes to
        Resource, ///< a picture, a script, a sound: part of the page
        Style,    ///< a style sheet, which may refer to more
    } kind = Kind::Link;
    qsizetype start = 0; ///< place in the text, in characters, entities still there
    qsizetype length = 0;
};

/// Where a reference leads.
struct PageTarget
{
    enum class Place {
        SamePage,  ///< empty or only an anchor
        Relative,  ///< a file beside the page, in `path`
        Absolute,  ///< from the root of a disk or server
        Elsewhere, ///< another machine, mail, a script
    } place = Place::SamePage;
    QString path;   ///< of Relative: decoded, with "/" between its pieces
    QString anchor; ///< what stands behind "#", decoded
};

/// Reads an attribute value as a browser does: entities and %-codes decoded, "\" taken as "/", the
/// query cut off.
PageTarget targetOf(QStringView reference);
/// The same for one whose entities are decoded already.
PageTarget targetOfAddress(const QString &address);

/// `path` of a Relative target as seen from `folder` ("" or "sub\"): a relative path with
/// backslashes, its "." and ".." worked out. Nothing when it climbs out of the top folder.
std::optional<QString> joined(const QString &folder, const QString &path);

/// The reference by which a page means the file `to` (both relative to the project folder, with
/// backslashes), relative to the page and percent-encoded, so that it can be put between quotes in
/// a page of any encoding; `anchor` is what is to stand behind "#", "" for none. The page itself is
/// meant by the anchor alone, or by its file name.
QString referenceTo(const QString &page, const QString &to, const QString &anchor = {});

/// True for the names of pages: .htm, .html, .xhtml.
bool isPageName(QStringView fileName);
