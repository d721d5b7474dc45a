#include "tools/pack/PackContents.h"

#include "platform/Paths.h"

#include <QCoreApplication>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestPath = 200; // below Docs; what stands before it needs room too

QString tr(const char *text)
{
    return QCoreApplication::translate("PackContents", text);
}

/// Gathers the files that pages were made from, as folded paths relative to the project.
class Originals final
{
public:
    explicit Originals(const BuildInput &input)
        : m_docs(parentFolder(withoutBackslash(input.folder)))
    {
        for (const BuildBook &book : input.books) {
            for (const BookSource &source : book.book.sources) {
                if (source.kind != SourceKind::excluded)
                    note(source.path);
            }
        }
    }

    [[nodiscard]] QSet<QString> take() { return std::move(m_paths); }

private:
    // A copied project remembers where its original had them. A file in an archive is remembered
    // as if the archive were a folder.
    void note(const QString &source)
    {
        if (!source.startsWith(m_docs, Qt::CaseInsensitive))
            return;
        const QString path = source.sliced(m_docs.size()).replace(u'/', u'\\').toCaseFolded();
        const qsizetype project = path.indexOf(u'\\') + 1;
        for (qsizetype end = path.indexOf(u'\\', project); end >= 0;
             end = path.indexOf(u'\\', end + 1))
            m_paths.insert(path.sliced(project, end - project));
        m_paths.insert(path.sliced(project));
    }

    QString m_docs; ///< with backslash
    QSet<QString> m_paths;
};

/// What the program leaves of its own work, in whichever folder.
bool isWorkFile(const QString &path)
{
    static const QRegularExpression work(
        uR"(\.(qvtmp[0-9]+|qvdel[0-9]+|qvnew|qvold|xml\.lock|qvnew\.lock)(\\|$))"_s,
        QRegularExpression::CaseInsensitiveOption);
    return work.match(path).hasMatch();
}

/// What the program writes into folders of its own and nobody but it reads. In the authors' folders
/// files may be called so too.
bool isOurNote(const QString &path)
{
    static const QRegularExpression note(
        uR"((^|\\)([^\\]*_Log\.txt|QV_PageFacts\.bin|QV_SearchWords\.bin)"
        uR"(|QV_QA(Report|Baseline)\.xml)$)"_s,
        QRegularExpression::CaseInsensitiveOption);
    return note.match(path).hasMatch();
}

bool isPackedCopy(const QString &path)
{
    static const QRegularExpression packed(uR"(^QV[^\\]*_Server\.Zip$)"_s,
                                           QRegularExpression::CaseInsensitiveOption);
    return packed.match(path).hasMatch();
}

/// Whether the list of the packed files, which is an XML file, can hold a name.
bool canBeListed(const QString &path)
{
    return std::none_of(path.begin(), path.end(), [](QChar c) {
        return c.unicode() < 0x20 || c.isNonCharacter() || c.unicode() >= 0xFFFE;
    });
}

Finding warning(const char *code, Severity severity, const QString &path, const QString &text)
{
    return {QString::fromLatin1(code), severity, path, 0, text, path};
}

/// Looks at the names of what is packed, one after the other.
class NameInspector final
{
public:
    explicit NameInspector(const QString &project)
        : m_project(project)
    {
    }

    void look(const QString &path, QList<Finding> &warnings)
    {
        lookAtNames(path, warnings);
        if (m_project.size() + 1 + path.size() > longestPath)
            warnings.append(
                warning("PACK03", Severity::Warning, path,
                        tr("The path has more than %1 characters, which Windows may refuse. "
                           "Choose shorter names.")
                            .arg(longestPath)));
        const QString &twin = m_spelled[path.toCaseFolded()];
        if (!twin.isEmpty())
            warnings.append(warning("PACK01", Severity::Warning, path,
                                    tr("Its name differs from %1 in letter case only. Windows "
                                       "keeps one of the two. Rename one of them.")
                                        .arg(twin)));
        m_spelled[path.toCaseFolded()] = path;
    }

private:
    /// Folders are looked at with their first file.
    void lookAtNames(const QString &path, QList<Finding> &warnings)
    {
        const qsizetype end = path.lastIndexOf(u'\\');
        if (const QString folder = path.first(qMax(end, 0));
            !folder.isEmpty() && folder != m_folder) {
            m_folder = folder;
            for (const QString &name : folder.split(u'\\'))
                lookAtName(name, path, warnings);
        }
        lookAtName(path.sliced(end + 1), path, warnings);
    }

    static void lookAtName(const QString &name, const QString &path, QList<Finding> &warnings)
    {
        if (!isSafeName(name))
            warnings.append(warning("PACK02", Severity::Warning, path,
                                    tr("Windows refuses the name \"%1\". Rename it.").arg(name)));
    }

    QString m_project;
    QString m_folder; ///< of the last file
    QHash<QString, QString> m_spelled;
};

} // namespace

QString packName(const QString &project)
{
    return u"QV%1_Server.Zip"_s.arg(project);
}

PackChoice::PackChoice(const BuildInput &input, bool withSources)
    : m_input(input)
    , m_originals(withSources ? QSet<QString>() : Originals(input).take())
{
    const QStringList folders = input.pageFolders();
    for (const QString &folder : folders)
        m_authors.append(withBackslash(folder).toCaseFolded());
}

bool PackChoice::takes(const QString &path) const
{
    if (isWorkFile(path) || isPackedCopy(path) || (isOurNote(path) && !isAuthors(path)))
        return false;
    return m_originals.isEmpty() || !m_originals.contains(path.toCaseFolded())
           || !m_input.ownersOf(path).isEmpty();
}

bool PackChoice::isAuthors(const QString &path) const
{
    const QString folded = path.toCaseFolded();
    return std::any_of(m_authors.begin(), m_authors.end(),
                       [&](const QString &folder) { return folded.startsWith(folder); });
}

PackContents packContents(const BuildInput &input, const ProjectListing &listing, bool withSources)
{
    PackContents contents;
    const PackChoice choice(input, withSources);
    NameInspector names(input.project);
    for (const ProjectListing::File &file : listing.files()) {
        const QString path = ProjectListing::shown(file.path);
        if (!choice.takes(path))
            continue;
        if (!canBeListed(path)) {
            contents.warnings.append(
                warning("PACK04", Severity::Error, path,
                        tr("It is left out: its name holds control characters. "
                           "Rename it.")));
            continue;
        }
        names.look(path, contents.warnings);
        contents.files.push_back(file);
        contents.bytes += file.size;
    }
    return contents;
}
