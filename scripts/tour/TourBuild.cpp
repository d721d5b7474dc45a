// The part of the tour that builds a project and packs it.
#include "Tour.h"

#include "platform/FileSystem.h"
#include "platform/Paths.h"
#include "startup/FormWindow.h"
#include "startup/Program.h"
#include "startup/Session.h"

#include <QAbstractButton>
#include <QElapsedTimer>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>

#include <algorithm>
#include <cstdio>

#include <zip.h>

using namespace Qt::StringLiterals;

namespace {

/// Waits until the window lets its author go on.
void waitUntilEnabled(const QWidget *window, const char *button)
{
    constexpr int patience = 120000;
    QElapsedTimer waited;
    waited.start();
    while (!child<QAbstractButton>(window, button)->isEnabled()) {
        if (waited.elapsed() > patience)
            tourFails(QString::fromLatin1(button) + u" stayed disabled"_s);
        settle(100);
    }
}

/// Tells what is in the packed copy.
void listPack(FileSystem &files, const QString &path)
{
    constexpr zip_int64_t shown = 12;
    int error = 0;
    zip_t *const archive = zip_open(QFile::encodeName(files.nativePath(path)), ZIP_RDONLY, &error);
    if (archive == nullptr)
        tourFails(u"The packed copy cannot be opened: "_s + path);
    const zip_int64_t count = zip_get_num_entries(archive, 0);
    for (zip_int64_t entry = 0; entry < std::min(shown, count); ++entry)
        std::printf("    %s\n", zip_get_name(archive, zip_uint64_t(entry), 0));
    std::printf("    ... %lld entries in all\n", static_cast<long long>(count));
    zip_discard(archive);
}

} // namespace

void Tour::buildAndPack()
{
    click(window(Form::MainUI), "cmdBuild");
    QWidget *build = window(Form::Build);
    settle(800);
    m_camera.take(build, u"build-choice"_s, u"What a build would do, and why"_s);

    click(build, "cmdNext");
    settle(60);
    m_camera.take(build, u"build-runs"_s, u"The tools at work"_s);
    waitUntilEnabled(build, "cmdBack");
    settle(300);
    auto *results = child<QTabWidget>(build, "tabResults");
    const QList<std::pair<QString, QString>> pictures{
        {u"build-log"_s, u"What the tools said"_s},
        {u"build-findings"_s, u"What the quality checks found"_s},
        {u"pack-plan"_s, u"What would go to the server"_s},
        {u"search"_s, u"What readers will find"_s}};
    for (int tab = 0; tab < pictures.size(); ++tab) {
        results->setCurrentIndex(tab);
        settle(800);
        if (tab == 3) {
            type(child<QLineEdit>(build, "txtSearch"), u"package manager"_s);
            click(build, "cmdSearch");
            settle(500);
        }
        m_camera.take(build, pictures.at(tab).first, pictures.at(tab).second);
    }
    pack(build, results);
}

void Tour::pack(QWidget *build, QTabWidget *results)
{
    results->setCurrentIndex(2);
    settle(300);
    click(build, "cmdPack");
    waitUntilEnabled(build, "cmdClose");
    settle(300);
    m_camera.take(build, u"packed"_s, u"The packed copy"_s);
    std::printf("    %s\n", qUtf8Printable(child<QLabel>(build, "lblPacked")->text()));
    const Session &session = m_world.program.session;
    const QString project = session.projectName;
    listPack(m_world.program.files,
             projectFolder(session.serverPath, project) + u"QV"_s + project + u"_Server.Zip"_s);
    click(build, "cmdClose");
    settle(300);
    m_camera.take(window(Form::MainUI), u"built"_s, u"Back in the workspace"_s);
}
