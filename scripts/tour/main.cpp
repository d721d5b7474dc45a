// A guided tour of the program, and the sample installation for a first try.
//   qv_tour play OUT DOCUMENTATION OWN-PAGES [dark]
//   qv_tour sample
// "play" walks through the real windows and writes numbered pictures, and the files they made, to
// OUT. DOCUMENTATION holds a folder per fetched book; what is missing there comes from OWN-PAGES.
// "sample" makes a sample installation in the user's data folder unless a server is set already;
// one that it made before gets the companion programs as they are now.

#include "Tour.h"

#include "dialogs/CompanionPrograms.h"
#include "dialogs/FirstRun.h"
#include "dialogs/SampleInstallation.h"
#include "platform/QvError.h"
#include "platform/native/NativePlatform.h"
#include "platform/widgets/MarksStyle.h"

#include <QApplication>
#include <QPalette>
#include <QSettings>
#include <QStyleFactory>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

void goDark()
{
    QPalette dark(QColor(0x2b, 0x2e, 0x33));
    dark.setColor(QPalette::Base, QColor(0x1f, 0x22, 0x26));
    dark.setColor(QPalette::AlternateBase, QColor(0x26, 0x29, 0x2e));
    dark.setColor(QPalette::Highlight, QColor(0x3d, 0x7e, 0xbf));
    dark.setColor(QPalette::Link, QColor(0x6f, 0xb1, 0xf0));
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        dark.setColor(QPalette::Disabled, role, QColor(0x85, 0x8a, 0x91));
    QApplication::setPalette(dark);
}

int play(const QStringList &arguments)
{
    const QDir out(arguments.at(0));
    const QDir files(out.filePath(u"files"_s));
    if (files.exists())
        tourFails(files.path() + u" is there already; name a fresh folder"_s);
    files.mkpath(u"drives/c"_s);
    QSettings::setDefaultFormat(QSettings::IniFormat);
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, files.filePath(u"layout"_s));
    QApplication::setStyle(new MarksStyle(QStyleFactory::create(u"Fusion"_s)));
    if (arguments.value(3) == "dark"_L1)
        goDark();

    // The same for the programs that this one runs.
    qputenv("QUOVANE_DRIVES", QFile::encodeName(files.filePath(u"drives"_s)));
    qputenv("QUOVANE_SETTINGS", QFile::encodeName(files.path()));
    TourWorld world(files.filePath(u"drives"_s), {files.path(), files.path()});
    Camera camera(out);
    Tour(world, camera, QDir(arguments.at(1)), QDir(arguments.at(2))).play();
    std::printf("%d pictures and texts; the files are in %s\n", camera.count(),
                qUtf8Printable(files.path()));
    return 0;
}

int sample()
{
    const QString folder = u"C:\\Quovane Sample"_s;
    const QString bin = folder + u"\\Client\\Bin"_s;
    const QString programs = QApplication::applicationDirPath();
    TourWorld world(drivesFolder(), settingsFolders());
    try {
        if (FirstRun(world.program).isNeeded()) {
            createSampleInstallation(world.program, folder, programs);
            std::printf("A sample installation was made: %s\n",
                        qUtf8Printable(world.files.nativePath(folder)));
        } else if (world.files.folderExists(bin)) {
            copyCompanions(world.files, programs, bin + u'\\');
        }
    } catch (const QvError &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QApplication::setOrganizationName(u"quovane"_s);
    QApplication::setApplicationName(u"developer"_s);
    QApplication::setQuitOnLastWindowClosed(false);
    const QStringList arguments = QApplication::arguments();
    if (arguments.value(1) == "play"_L1 && arguments.size() >= 5)
        return play(arguments.sliced(2));
    if (arguments.value(1) == "sample"_L1)
        return sample();
    std::fputs("usage: qv_tour play OUT DOCUMENTATION OWN-PAGES [dark] | sample\n", stderr);
    return 64;
}
