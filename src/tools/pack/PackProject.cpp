#include "tools/pack/PackProject.h"

#include "platform/FileStreams.h"
#include "platform/QvError.h"
#include "tools/OrderedWork.h"
#include "tools/pack/LastPack.h"
#include "tools/pack/PackContents.h"
#include "tools/pack/PackedAhead.h"
#include "tools/pack/SpareDeflates.h"
#include "tools/pack/ZipOutput.h"

#include <QCoreApplication>

#include <array>
#include <atomic>

using namespace Qt::StringLiterals;

namespace {

QString tr(const char *text)
{
    return QCoreApplication::translate("PackProject", text);
}

/// A file is not what it was when packing began.
struct FileChanged
{
    QString path;
};

// How much of a file that is compressed already is tried, and what must be gained at least.
constexpr qsizetype trialSize = 16 * 1024;
constexpr qsizetype leastGain = 200; // one byte in so many

/// Kinds that are compressed already, so that it is worth a try whether deflate gains anything.
bool isCompressedKind(const std::string &path)
{
    static const QStringList kinds{u"png"_s,  u"jpg"_s, u"jpeg"_s,  u"gif"_s, u"webp"_s,
                                   u"zip"_s,  u"gz"_s,  u"woff"_s,  u"mp3"_s, u"mp4"_s,
                                   u"docx"_s, u"7z"_s,  u"woff2"_s, u"xlsx"_s};
    const size_t dot = path.rfind('.');
    return dot != std::string::npos
           && kinds.contains(QString::fromStdString(path.substr(dot + 1)), Qt::CaseInsensitive);
}

/// Gives the packed copy of the last time its right capitals: the new one must not lie beside it.
/// Others that differ in capitals only are returned.
QStringList settleName(FileSystem &files, const QString &folder, const QString &name)
{
    QStringList others;
    bool isThere = false;
    for (const FolderEntry &entry : files.kinds(folder)) {
        isThere |= entry.name == name;
        if (entry.name != name && entry.name.compare(name, Qt::CaseInsensitive) == 0
            && entry.status.kind == FileKind::File)
            others.append(folder + entry.name);
    }
    if (!isThere && !others.isEmpty())
        files.move(others.takeFirst(), folder + name, NameCheck::Exact);
    return others;
}

/// One try at packing a project.
class Packing final
{
public:
    Packing(FileSystem &files, const BuildInput &input, const PackOptions &options,
            const Progress &progress)
        : m_files(files)
        , m_input(input)
        , m_options(options)
        , m_progress(progress)
        , m_contents(packContents(input,
                                  ProjectListing::read(files, input.folder, {{}, progress.stop}),
                                  options.withSources))
        , m_path(input.folder + packName(input.project))
        , m_members(m_contents.files.size())
    {
    }

    PackResult run()
    {
        const QStringList others = settleName(m_files, m_input.folder, packName(m_input.project));
        openLast();
        survey();
        write();
        for (const QString &other : others)
            m_files.removeFile(other, true);
        return {.path = m_path,
                .count = static_cast<int>(m_members.size()),
                .bytes = m_contents.bytes,
                .packedBytes = m_files.status(m_path).size,
                .reused = m_reused};
    }

private:
    struct Member
    {
        quint32 sum = 0;
        bool isStored = false;
        std::optional<LastPack::Member> last; ///< the same content in the last pack
    };

    [[nodiscard]] const ProjectListing::File &file(size_t index) const
    {
        return m_contents.files[index];
    }
    [[nodiscard]] QString shown(size_t index) const
    {
        return ProjectListing::shown(file(index).path);
    }

    // A last pack that cannot be used is no hindrance: everything is compressed anew.
    void openLast()
    {
        if (!m_files.fileExists(m_path))
            return;
        trap([](const QvError &) {},
             [this] {
                 auto last = std::make_unique<LastPack>(m_files, m_path);
                 if (last->manifest().method == Deflate::method()
                     && last->manifest().project == m_input.project)
                     m_last = std::move(last);
             });
    }

    /// Reads all files once: their checksums stand at the head of the archive.
    void survey()
    {
        const auto look = [this](int number) {
            const auto index = static_cast<size_t>(number);
            const QByteArray content = read(index);
            Member &member = m_members[index];
            member.sum = Deflate::sum(content);
            if (m_last)
                member.last = sameInLast(index);
            member.isStored = member.last ? member.last->isStored : isBetterStored(index, content);
        };
        inOrder(static_cast<int>(m_members.size()), m_options.threads, m_progress.stop, look,
                [this](int number) {
                    const auto index = static_cast<size_t>(number);
                    advance(file(index).size / readingShare, shown(index));
                });
    }

    [[nodiscard]] std::optional<LastPack::Member> sameInLast(size_t index) const
    {
        const auto last = m_last->find(file(index).path);
        const bool isSame =
            last && last->size == file(index).size && last->sum == m_members[index].sum;
        return isSame ? last : std::nullopt;
    }

    /// Of a large file the middle tells: compressing a picture gains next to nothing and costs more
    /// time than any page.
    [[nodiscard]] bool isBetterStored(size_t index, const QByteArray &content) const
    {
        if (content.isEmpty() || !isCompressedKind(file(index).path))
            return content.isEmpty();
        const auto packedSize = [this](const QByteArray &bytes) {
            const SpareDeflates::Lent deflate(m_deflates);
            return deflate->packed(bytes).size();
        };
        if (content.size() <= trialSize)
            return packedSize(content) >= content.size();
        const qsizetype middle = (content.size() - trialSize) / 2;
        const auto sample = QByteArray::fromRawData(content.constData() + middle, trialSize);
        return packedSize(sample) >= trialSize - trialSize / leastGain;
    }

    [[nodiscard]] QByteArray read(size_t index) const
    {
        try {
            QByteArray content = m_files.readFile(m_input.folder + shown(index));
            if (content.size() == file(index).size)
                return content;
        } catch (const QvError &error) {
            if (error.number() != FileNotFound && error.number() != PathNotFound)
                throw;
        }
        throw FileChanged{m_input.folder + shown(index)};
    }

    void write()
    {
        const auto archive = m_files.startFile(m_path, {.throughReadOnly = true});
        writeMembers(*archive);
        m_last.reset(); // Windows replaces no file that is open
        archive->putInPlace();
    }

    void writeMembers(FileWriter &archive)
    {
        const PackManifest manifest = list();
        const QByteArray listBytes = manifestBytes(manifest);
        PackedAhead ahead(sizes(), m_options.threads, [this](Deflate &deflate, size_t index) {
            return packed(deflate, index);
        });
        writeZip(archive, entries(listBytes, manifest.date()), [&](size_t entry) {
            if (entry == 0)
                return Deflate().packed(listBytes);
            advance(file(entry - 1).size, shown(entry - 1));
            return ahead.take(m_progress.stop);
        });
        advance(0, {});
    }

    [[nodiscard]] PackManifest list() const
    {
        PackManifest all{.project = m_input.project,
                         .id = m_input.header.id,
                         .language = m_input.language,
                         .method = Deflate::method(),
                         .files = {}};
        for (size_t i = 0; i < m_members.size(); ++i)
            all.files.push_back({.path = file(i).path,
                                 .size = file(i).size,
                                 .modified = file(i).modified,
                                 .sum = m_members[i].sum});
        return all;
    }

    [[nodiscard]] std::vector<ZipEntry> entries(const QByteArray &list, qint64 date) const
    {
        std::vector<ZipEntry> all;
        all.reserve(m_members.size() + 1);
        all.push_back({.name = manifestName,
                       .size = list.size(),
                       .modified = date,
                       .sum = Deflate::sum(list)});
        const std::string folder = m_input.project.toStdString() + '/';
        for (size_t i = 0; i < m_members.size(); ++i)
            all.push_back({.name = folder + file(i).path,
                           .size = file(i).size,
                           .modified = file(i).modified,
                           .sum = m_members[i].sum,
                           .isStored = m_members[i].isStored});
        return all;
    }

    [[nodiscard]] std::vector<qint64> sizes() const
    {
        std::vector<qint64> all;
        for (const ProjectListing::File &file : m_contents.files)
            all.push_back(file.size);
        return all;
    }

    /// A member as it shall lie in the archive. Several threads call at once.
    QByteArray packed(Deflate &deflate, size_t index)
    {
        const Member &member = m_members[index];
        if (member.last) {
            QByteArray bytes = m_last->packed(*member.last);
            if (isWhole(deflate, bytes, index)) {
                ++m_reused;
                return bytes;
            }
        }
        QByteArray content = read(index);
        if (Deflate::sum(content) != member.sum)
            throw FileChanged{m_input.folder + shown(index)};
        return member.isStored ? content : deflate.packed(content);
    }

    bool isWhole(Deflate &deflate, const QByteArray &bytes, size_t index) const
    {
        const Member &member = m_members[index];
        if (member.isStored)
            return bytes.size() == file(index).size && Deflate::sum(bytes) == member.sum;
        return deflate.unpacksTo(bytes, file(index).size, member.sum);
    }

    // Reading a file costs so much less than compressing it.
    static constexpr qint64 readingShare = 8;

    void advance(qint64 bytes, const QString &what)
    {
        constexpr qint64 kilobyte = 1024;
        const qint64 total = m_contents.bytes + m_contents.bytes / readingShare;
        m_done = std::min(m_done + bytes, total);
        m_progress.step(static_cast<int>(m_done / kilobyte), static_cast<int>(total / kilobyte),
                        what);
    }

    FileSystem &m_files;
    const BuildInput &m_input;
    PackOptions m_options;
    const Progress &m_progress;
    PackContents m_contents;
    QString m_path;
    std::vector<Member> m_members; ///< as `m_contents.files`
    std::unique_ptr<LastPack> m_last;
    mutable SpareDeflates m_deflates;
    std::atomic<int> m_reused = 0;
    qint64 m_done = 0; ///< bytes
};

PackResult pack(FileSystem &files, const BuildInput &input, const PackOptions &options,
                const Progress &progress)
{
    try {
        return Packing(files, input, options, progress).run();
    } catch (const FileChanged &) { // what wrote it may be done now
        return Packing(files, input, options, progress).run();
    }
}

} // namespace

PackResult packProject(FileSystem &files, const BuildInput &input, const PackOptions &options,
                       const Progress &progress)
{
    try {
        return pack(files, input, options, progress);
    } catch (const FileChanged &changed) {
        throw QvError(
            PathFileAccess, u"packProject"_s,
            tr("%1 changed while it was packed. The packed copy is as it was. Finish what "
               "writes this file, then pack again.")
                .arg(changed.path));
    } catch (const QvError &error) {
        throw QvError(error.number(), u"packProject"_s,
                      tr("%1. The packed copy is as it was. When that is mended, pack again.")
                          .arg(error.description()));
    }
}
