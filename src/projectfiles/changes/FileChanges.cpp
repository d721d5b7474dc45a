#include "projectfiles/changes/FileChanges.h"

using namespace Qt::StringLiterals;

namespace {

FileStep reversed(const FileStep &step)
{
    FileStep back = step;
    switch (step.kind) {
    case FileStep::Kind::Write:
        std::swap(back.before, back.after);
        break;
    case FileStep::Kind::Move:
        std::swap(back.path, back.to);
        break;
    case FileStep::Kind::MakeFolder:
        back.kind = FileStep::Kind::RemoveFolder;
        break;
    case FileStep::Kind::RemoveFolder:
        back.kind = FileStep::Kind::MakeFolder;
        break;
    }
    return back;
}

} // namespace

std::optional<QString> carriedOver(const QString &path, const QString &from, const QString &to)
{
    const qsizetype size = from.size();
    const bool mayBe = path.size() == size || (path.size() > size && path.at(size) == u'\\');
    if (!mayBe || !path.startsWith(from, Qt::CaseInsensitive))
        return std::nullopt;
    return to + path.sliced(size);
}

FileStamp stampOf(FileSystem &files, const QString &path)
{
    const FileStatus status = files.status(path);
    return {status.kind, status.size, status.modified};
}

QStringList FileChanges::paths() const
{
    QStringList all;
    for (const FileStep &step : steps) {
        all.append(step.path);
        if (step.kind == FileStep::Kind::Move)
            all.append(step.to);
    }
    return all;
}

qint64 FileChanges::size() const
{
    qint64 bytes = 0;
    for (const FileStep &step : steps)
        bytes +=
            step.before.value_or(QByteArray()).size() + step.after.value_or(QByteArray()).size();
    return bytes;
}

FileChanges FileChanges::reversed() const
{
    FileChanges back;
    back.expected = expected;
    back.name = name;
    for (auto step = steps.crbegin(); step != steps.crend(); ++step)
        back.steps.append(::reversed(*step));
    return back;
}
