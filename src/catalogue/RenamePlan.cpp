#include "catalogue/RenamePlan.h"

#include "catalogue/CatalogueLock.h"
#include "platform/Paths.h"
#include "platform/QvError.h"
#include "platform/Xml.h"

#include <QRegularExpression>

#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr auto rootName = "QV_Rename";

std::optional<RenamePlan> read(FileSystem &files, const QString &path)
{
    return trap([](const QvError &) {},
                [&]() -> std::optional<RenamePlan> {
                    const pugi::xml_document document = loadXml(files, path, rootName);
                    const pugi::xml_node root = document.document_element();
                    RenamePlan plan{.path = path,
                                    .oldName = textOf(root.child("Old_Name")),
                                    .newName = textOf(root.child("New_Name")),
                                    .alsoOthers = textOf(root.child("Other_Projects")) == "Yes"_L1};
                    const bool usable = isSafeName(plan.oldName) && isSafeName(plan.newName);
                    return usable ? std::optional(plan) : std::nullopt;
                });
}

} // namespace

RenamePlan writeRenamePlan(FileSystem &files, const QString &serverPath, RenamePlan plan)
{
    // Two authors who rename two projects at once never take the same file.
    const CatalogueLock lock(files, cataloguePath(serverPath));
    const QString place = docsFolder(serverPath) + u"QV_Rename-%1.xml"_s;
    int number = 1;
    while (files.exists(place.arg(number)))
        ++number;
    plan.path = place.arg(number);
    pugi::xml_document document;
    const pugi::xml_node root = document.append_child(rootName);
    appendText(root, "Old_Name", plan.oldName);
    appendText(root, "New_Name", plan.newName);
    appendText(root, "Other_Projects", plan.alsoOthers ? u"Yes"_s : u"No"_s);
    saveXml(files, plan.path, document);
    return plan;
}

QList<RenamePlan> renamePlans(FileSystem &files, const QString &serverPath)
{
    static const QRegularExpression name(u"^QV_Rename-[0-9]+\\.xml$"_s,
                                         QRegularExpression::CaseInsensitiveOption);
    QList<RenamePlan> plans;
    for (const FolderEntry &entry : files.kinds(docsFolder(serverPath))) {
        if (entry.status.kind != FileKind::File || !name.match(entry.name).hasMatch())
            continue;
        if (const auto plan = read(files, docsFolder(serverPath) + entry.name))
            plans.append(*plan);
    }
    return plans;
}
