#include "projectfiles/changes/ChangePlan.h"

#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/Xml.h"
#include "platform/XmlCheck.h"
#include "projectfiles/FileElements.h"

#include <QRegularExpression>
#include <QtEndian>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr const char *rootName = "QV_Change";
constexpr std::array kindNames{"Write", "Move", "MakeFolder", "RemoveFolder"};

QString backups(const QString &projectFolder)
{
    return projectFolder + ProjectFile::backupFolder + u'\\';
}

/// Tells damaged data from whole ones; fast, because it goes over all that a change writes.
QString checksum(const QByteArray &data)
{
    quint64 sum = static_cast<quint64>(data.size());
    const auto mix = [&sum](quint64 piece) {
        sum = (sum ^ piece) * 0x9E3779B97F4A7C15ULL;
        sum ^= sum >> 29;
    };
    qsizetype at = 0;
    for (; at + 8 <= data.size(); at += 8)
        mix(qFromLittleEndian<quint64>(data.constData() + at));
    for (; at < data.size(); ++at)
        mix(static_cast<uchar>(data.at(at)));
    return QString::number(sum, 16);
}

/// Where things lay before all the moves noted so far. Finds it without going through them: an
/// import has thousands.
class FirstPlaces final
{
public:
    void note(const FileStep &move)
    {
        m_into[move.to.toCaseFolded()].append(m_moves.size());
        m_moves.append({move.path, move.to});
    }

    [[nodiscard]] QString of(QString path) const
    {
        qsizetype last = lastInto(path, m_moves.size());
        while (last >= 0) {
            path = m_moves.at(last).from + path.sliced(m_moves.at(last).to.size());
            last = lastInto(path, last);
        }
        return path;
    }

private:
    struct Move
    {
        QString from, to;
    };

    /// The last of the first `count` moves that led to `path` or to a folder above it; -1 when none
    /// did.
    [[nodiscard]] qsizetype lastInto(const QString &path, qsizetype count) const
    {
        qsizetype last = -1;
        for (QString place = path.toCaseFolded(); !place.isEmpty();
             place = withoutBackslash(parentFolder(place))) {
            const QList<qsizetype> moves = m_into.value(place);
            const auto later = std::ranges::lower_bound(moves, count);
            if (later != moves.begin())
                last = std::max(last, *std::prev(later));
        }
        return last;
    }

    QList<Move> m_moves;
    QHash<QString, QList<qsizetype>> m_into; ///< by folded destination
};

void setNumber(pugi::xml_node node, const char *name, qint64 number)
{
    setAttribute(node, name, QString::number(number));
}

// Any name that the disk has, so that each change can be noted; but none that leads elsewhere.
bool staysInside(const QString &path)
{
    const QStringList names = path.split(u'\\');
    return !path.contains(u'/') && std::ranges::none_of(names, [](const QString &name) {
        return name.isEmpty() || name == "."_L1 || name == ".."_L1;
    });
}

/// Lists the steps of a change and collects what its files get.
class PlanWriter final
{
public:
    PlanWriter(FileSystem &files, const QString &folder, const QList<FileStep> &steps,
               const QHash<QString, FileStamp> &old)
        : m_files(files)
        , m_folder(folder)
        , m_steps(steps)
        , m_old(old)
    {
        qsizetype size = 0;
        for (const FileStep &step : steps)
            size += step.after.value_or(QByteArray()).size();
        data.reserve(size);
    }

    void append(pugi::xml_node list, qsizetype index)
    {
        const FileStep &step = m_steps.at(index);
        pugi::xml_node node = list.append_child("Step");
        setAttribute(node, "Kind", QLatin1StringView(kindNames[static_cast<size_t>(step.kind)]));
        if (step.kind == FileStep::Kind::Write || step.kind == FileStep::Kind::Move)
            noteOld(node, index);
        if (step.kind == FileStep::Kind::Write)
            noteContent(node, index);
        notePath(node, "Step_Path", step.path);
        if (step.kind != FileStep::Kind::Move)
            return;
        notePath(node, "Step_To", step.to);
        m_firstPlaces.note(step);
    }

    QByteArray data;

private:
    static void notePath(pugi::xml_node node, const char *name, const QString &path)
    {
        if (!isXmlText(path) || path.contains(u'\n') || !staysInside(path))
            throw QvError(PathFileAccess, {},
                          u"This name cannot be part of a change: \"%1\""_s.arg(path));
        appendText(node, name, path);
    }

    void noteOld(pugi::xml_node node, qsizetype index)
    {
        const QString first = m_firstPlaces.of(m_steps.at(index).path);
        const QString key = first.toCaseFolded();
        if (const auto earlier = m_written.constFind(key); earlier != m_written.constEnd()) {
            setNumber(node, "OldStep", *earlier);
            return;
        }
        const auto known = m_old.constFind(key);
        const FileStamp stamp =
            known == m_old.constEnd() ? stampOf(m_files, m_folder + first) : *known;
        if (stamp.kind != FileKind::File)
            return;
        setNumber(node, "OldSize", stamp.size);
        setNumber(node, "OldTime", stamp.modified.toMSecsSinceEpoch());
    }

    void noteContent(pugi::xml_node node, qsizetype index)
    {
        const FileStep &step = m_steps.at(index);
        m_written.insert(m_firstPlaces.of(step.path).toCaseFolded(), index);
        if (!step.after)
            return;
        setNumber(node, "At", data.size());
        setNumber(node, "Size", step.after->size());
        data += *step.after;
    }

    FileSystem &m_files;
    const QString m_folder;
    const QList<FileStep> &m_steps;
    const QHash<QString, FileStamp> &m_old;
    FirstPlaces m_firstPlaces;
    QHash<QString, qsizetype> m_written; ///< steps by the first place of what they wrote
};

[[noreturn]] void raiseDamaged(const QString &why)
{
    throw QvError(PathFileAccess, {}, why);
}

QString checkedPath(const pugi::xml_node &node, const char *name)
{
    const QString path = textOf(node.child(name));
    if (!staysInside(path))
        raiseDamaged(u"It names a place outside the project: \"%1\"."_s.arg(path));
    return path;
}

std::optional<qint64> numberOf(const pugi::xml_node &node, const char *name)
{
    bool isNumber = false;
    const qint64 number = valueOf(node.attribute(name)).toLongLong(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

FileStep::Kind kindOf(const pugi::xml_node &node)
{
    const auto found =
        std::ranges::find(kindNames, valueOf(node.attribute("Kind")),
                          [](const char *name) { return QString::fromLatin1(name); });
    if (found == kindNames.end())
        raiseDamaged(u"It holds a step of an unknown kind."_s);
    return static_cast<FileStep::Kind>(found - kindNames.begin());
}

std::optional<QByteArray> contentOf(const pugi::xml_node &node, const QByteArray &data)
{
    const auto at = numberOf(node, "At");
    const auto size = numberOf(node, "Size");
    if (!at && !size)
        return std::nullopt;
    if (!at || !size || *at < 0 || *size < 0 || *size > data.size() || *at > data.size() - *size)
        raiseDamaged(u"A step does not fit its data."_s);
    return data.sliced(*at, *size);
}

/// How a written or moved file is known before the change.
void readOld(const pugi::xml_node &node, const QList<PlannedStep> &earlier, PlannedStep &planned)
{
    if (const auto step = numberOf(node, "OldStep")) {
        if (*step < 0 || *step >= earlier.size())
            raiseDamaged(u"A step refers to one that is not there."_s);
        planned.oldContent = earlier.at(*step).step.after;
    } else if (const auto time = numberOf(node, "OldTime")) {
        planned.old = {FileKind::File, numberOf(node, "OldSize").value_or(-1),
                       QDateTime::fromMSecsSinceEpoch(*time, Qt::UTC)};
    }
}

QList<int> numbersInUse(FileSystem &files, const QString &folder, const QString &pattern)
{
    const QRegularExpression name(u"^Change-([0-9]{1,9})"_s + pattern,
                                  QRegularExpression::CaseInsensitiveOption);
    QList<int> numbers;
    for (const FolderEntry &entry : files.kinds(folder)) {
        if (const auto match = name.match(entry.name); match.hasMatch())
            numbers.append(match.captured(1).toInt());
    }
    std::ranges::sort(numbers);
    return numbers;
}

} // namespace

bool PlannedStep::isOldAt(FileSystem &files, const QString &path) const
{
    if (!oldContent)
        return stampOf(files, path) == old;
    return files.fileExists(path) && files.readFile(path) == oldContent;
}

QString changeLockPath(const QString &projectFolder)
{
    return backups(projectFolder) + u"Change.lock"_s;
}

std::unique_ptr<FileLock> lockChanges(FileSystem &files, const QString &projectFolder,
                                      std::chrono::milliseconds patience)
{
    if (const QString folder = backups(projectFolder); !files.folderExists(folder))
        files.makeFolder(folder);
    return files.lock(changeLockPath(projectFolder), projectFolder + ProjectFile::toc, patience);
}

ChangePlan::ChangePlan(FileSystem &files, QString projectFolder, int number)
    : m_files(&files)
    , m_folder(std::move(projectFolder))
    , m_number(number)
{
}

QList<ChangePlan> ChangePlan::inForce(FileSystem &files, const QString &projectFolder)
{
    QList<ChangePlan> plans;
    if (!files.folderExists(backups(projectFolder)))
        return plans;
    for (const int number : numbersInUse(files, backups(projectFolder), u"\\.xml$"_s))
        plans.append(ChangePlan(files, projectFolder, number));
    return plans;
}

bool ChangePlan::isAnyLeft(FileSystem &files, const QString &projectFolder)
{
    const QString folder = backups(projectFolder);
    return files.folderExists(folder)
           && !numbersInUse(files, folder, u"\\.(xml|kept)$"_s).isEmpty();
}

void ChangePlan::removeStrayData(FileSystem &files, const QString &projectFolder)
{
    const QList<int> numbers = numbersInUse(files, backups(projectFolder), u"\\.data$"_s);
    const auto lock =
        numbers.isEmpty() ? nullptr : lockChanges(files, projectFolder, std::chrono::seconds(0));
    if (!lock)
        return; // somebody may be about to put one in force
    for (const int number : numbers) {
        if (const ChangePlan plan(files, projectFolder, number);
            !files.exists(plan.path(u".xml"_s)))
            files.removeFile(plan.path(u".data"_s), true);
    }
}

ChangePlan ChangePlan::write(FileSystem &files, const QString &projectFolder,
                             const FileChanges &changes, const QHash<QString, FileStamp> &old)
{
    const QList<int> taken = numbersInUse(files, backups(projectFolder), u"\\."_s);
    ChangePlan plan(files, projectFolder, taken.isEmpty() ? 1 : taken.last() + 1);
    pugi::xml_document list;
    pugi::xml_node root = list.append_child(rootName);
    appendText(root, "Change_Name", changes.name);
    pugi::xml_node dataNode = root.append_child("Change_Data");
    pugi::xml_node steps = root.append_child("Change_Steps");
    PlanWriter writer(files, projectFolder, changes.steps, old);
    for (qsizetype i = 0; i < changes.steps.size(); ++i)
        writer.append(steps, i);
    setNumber(dataNode, "Size", writer.data.size());
    setAttribute(dataNode, "Sum", checksum(writer.data));
    const auto forget = [&](const QvError &error) {
        plan.remove();
        throw error;
    };
    trap(forget, [&] {
        if (!writer.data.isEmpty())
            files.replaceFile(plan.path(u".data"_s), writer.data);
        saveXml(files, plan.path(u".xml"_s), list);
    });
    return plan;
}

std::optional<QString> ChangePlan::read()
{
    const QByteArray list = m_files->readFile(path(u".xml"_s));
    const QString dataPath = path(u".data"_s);
    const QByteArray data = m_files->exists(dataPath) ? m_files->readFile(dataPath) : QByteArray();
    std::optional<QString> damage;
    trap([&](const QvError &error) { damage = error.description(); }, [&] { parse(list, data); });
    return damage;
}

void ChangePlan::parse(const QByteArray &list, const QByteArray &data)
{
    const QString listPath = path(u".xml"_s);
    const pugi::xml_document document = parseXml(list, listPath, rootName);
    const pugi::xml_node root = document.child(rootName);
    const pugi::xml_node dataNode = requiredChild(root, "Change_Data", listPath);
    if (numberOf(dataNode, "Size") != data.size()
        || valueOf(dataNode.attribute("Sum")) != checksum(data))
        raiseDamaged(u"Its data are damaged."_s);
    QList<PlannedStep> steps;
    for (const pugi::xml_node node :
         requiredChild(root, "Change_Steps", listPath).children("Step")) {
        PlannedStep planned;
        planned.step.kind = kindOf(node);
        planned.step.path = checkedPath(node, "Step_Path");
        if (planned.step.kind == FileStep::Kind::Move)
            planned.step.to = checkedPath(node, "Step_To");
        planned.step.after = contentOf(node, data);
        readOld(node, steps, planned);
        steps.append(planned);
    }
    m_name = textOf(root.child("Change_Name"));
    m_steps = steps;
}

// The list goes first: without it the plan is out of force.
void ChangePlan::remove()
{
    for (const QString &ending : {u".xml"_s, u".data"_s}) {
        if (m_files->exists(path(ending)))
            m_files->removeFile(path(ending), true);
        if (ending == ".xml"_L1)
            m_files->syncFolder(backups(m_folder));
    }
}

QString ChangePlan::putAside(const QString &ending)
{
    if (const QString data = path(u".data"_s); m_files->exists(data))
        m_files->move(data, path(ending + u".data"_s));
    m_files->move(path(u".xml"_s), path(ending));
    m_files->syncFolder(backups(m_folder));
    return path(ending);
}

QString ChangePlan::path(const QString &ending) const
{
    return backups(m_folder) + u"Change-%1"_s.arg(m_number) + ending;
}
