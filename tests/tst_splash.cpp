#include "startup/StartUp.h"
#include "startup/frmOrvantisVRXSplashScreen.h"
#include "support/FormDriver.h"
#include "support/TestProgram.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class tst_splash final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void showsNameVersionAndNotices();
    void staysForFiveSecondsUnlessTheFlagReadsOne();
    void closesAtAClick();

private:
    std::optional<QString> flag()
    {
        return world->registry.value(Hive::CurrentUser, RegistryKey::splash, u"SplashScreen"_s);
    }
    void setFlag(const QString &value)
    {
        world->registry.setValue(Hive::CurrentUser, RegistryKey::splash, u"SplashScreen"_s, value);
    }

    std::unique_ptr<TestProgram> world;
};

void tst_splash::init()
{
    world = std::make_unique<TestProgram>();
    setFlag(u"1"_s); // left over from another program; showing clears it
    showSplashScreen(world->program);
    QCOMPARE(flag(), u"0"_s);
    QVERIFY(openWindow<frmOrvantisVRXSplashScreen>());
}

void tst_splash::cleanup()
{
    if (auto *const splash = openWindow<frmOrvantisVRXSplashScreen>())
        splash->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void tst_splash::showsNameVersionAndNotices()
{
    const auto *splash = openWindow<frmOrvantisVRXSplashScreen>();
    const auto label = [&](const char *name) { return control<QLabel>(splash, name); };
    QCOMPARE(label("lblVersion")->text(), world->parts.generalTasks.QVDeveloperVersion());
    for (QLabel *const notice : {label("lblCopyRight"), label("lblNotice")}) {
        QVERIFY(!notice->text().isEmpty());
        QVERIFY2(notice->heightForWidth(notice->width()) <= notice->height()
                     || notice->sizeHint().width() <= notice->width(),
                 "the notice fits");
    }
    QCOMPARE(label("Image1")->pixmap().deviceIndependentSize(), QSizeF(521, 318));
    QVERIFY(splash->testAttribute(Qt::WA_ShowWithoutActivating));
}

void tst_splash::staysForFiveSecondsUnlessTheFlagReadsOne()
{
    const auto waited = [&] {
        const auto before = world->clock.elapsed;
        unloadSplashScreen(world->program);
        [&] { QVERIFY(!openWindow<frmOrvantisVRXSplashScreen>() && flag() == u"0"_s); }();
        return world->clock.elapsed - before;
    };
    world->registry.values.clear(); // a value that is not there is no wish to close
    const auto whole = waited();
    QVERIFY(whole >= 5s && whole < 6s);
    setFlag(u"1"_s);
    QCOMPARE(waited().count(), 0); // with none open only the flag is cleared

    showSplashScreen(world->program);
    setFlag(u"1"_s);
    QVERIFY(waited() < 2s);
    showSplashScreen(world->program);
    world->clock.elapsed += 5s;
    QCOMPARE(waited().count(), 500); // one look
}

void tst_splash::closesAtAClick()
{
    setFlag(u"left"_s);
    const auto *splash = openWindow<frmOrvantisVRXSplashScreen>();
    QTest::mouseClick(splash->windowHandle(), Qt::LeftButton, {}, {40, 60}); // on the name
    QVERIFY(!openWindow<frmOrvantisVRXSplashScreen>());
    QCOMPARE(flag(), u"left"_s);

    showSplashScreen(world->program); // it can be shown again, as the information window
    QVERIFY(openWindow<frmOrvantisVRXSplashScreen>());
    QWidget elsewhere;
    elsewhere.show();
    QTest::keyClick(&elsewhere, Qt::Key_Escape);
    QVERIFY(!openWindow<frmOrvantisVRXSplashScreen>());

    showSplashScreen(world->program); // and it makes way for a message
    QMessageBox box(QMessageBox::Information, u"Title"_s, u"Text"_s, QMessageBox::Ok);
    box.open();
    QVERIFY(!openWindow<frmOrvantisVRXSplashScreen>());
}

QV_FORM_TEST_MAIN(tst_splash)
#include "tst_splash.moc"
