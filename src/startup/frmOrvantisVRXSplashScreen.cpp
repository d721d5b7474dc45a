#include "startup/frmOrvantisVRXSplashScreen.h"

#include "components/Components.h"
#include "components/ProductInfo.h"
#include "resources/Icons.h"
#include "resources/Texts.h"
#include "ui_frmOrvantisVRXSplashScreen.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScreen>

using namespace Qt::StringLiterals;

namespace {

auto inHandler(QLatin1StringView handler)
{
    return [handler](const QvError &error) {
        return inProcedure(error, handler, u"frmOrvantisVRXSplashScreen"_s);
    };
}

} // namespace

frmOrvantisVRXSplashScreen::frmOrvantisVRXSplashScreen(Program &program)
    : FormWindow(program)
    , ui(std::make_unique<Ui::frmOrvantisVRXSplashScreen>())
{
    setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    setAttribute(Qt::WA_ShowWithoutActivating);
    ui->setupUi(this);
    for (QLabel *const label : findChildren<QLabel *>())
        label->setAttribute(Qt::WA_TransparentForMouseEvents, label != ui->Image1);
    ui->Image1->installEventFilter(this);
    qApp->installEventFilter(this);
}

frmOrvantisVRXSplashScreen::~frmOrvantisVRXSplashScreen() = default;

void frmOrvantisVRXSplashScreen::Form_Load()
{
    const auto shape = [](const QvError &error) {
        return withTag(error, u"QV_Developer::frmOrvantisVRXSplashScreen-Form_Load"_s);
    };
    trapped(shape, [this] {
        loadLabels();
        placeOnTop();
    });
}

void frmOrvantisVRXSplashScreen::loadLabels()
{
    const QString version = m_program.components.generalTasks.QVDeveloperVersion();
    ui->lblQV->setText(text(Text::ProductName));
    ui->lblQV2->setText(text(Text::ProductEdition));
    ui->lblVersion->setText(version);
    ui->lblCopyRight->setText(text(Text::RightsNotice));
    ui->lblNotice->setText(text(Text::LegalNotice));
    ui->lblVRX->setText(text(Text::ProductFamily));
    setAccessibleName(windowTitle() + u' ' + version);
}

void frmOrvantisVRXSplashScreen::placeOnTop()
{
    ui->Image1->setPixmap(picture("splash"_L1, ui->Image1->size(), devicePixelRatioF()));
    QRect place = rect();
    place.moveCenter(screen()->availableGeometry().center());
    move(place.topLeft());
}

void frmOrvantisVRXSplashScreen::mouseReleaseEvent(QMouseEvent *)
{
    Form_Click();
}

void frmOrvantisVRXSplashScreen::Form_Click()
{
    trapped(inHandler("Form_Click"_L1), [this] { close(); });
}

void frmOrvantisVRXSplashScreen::Image1_Click()
{
    trapped(inHandler("Image1_Click"_L1), [this] { close(); });
}

bool frmOrvantisVRXSplashScreen::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == ui->Image1 && event->type() == QEvent::MouseButtonRelease) {
        Image1_Click();
        return true;
    }
    if (event->type() == QEvent::Show && isMessage(watched))
        close();
    if (event->type() == QEvent::KeyPress && isVisible()
        && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
        close(); // the splash never has the focus, so the key arrives elsewhere
        return true;
    }
    return false;
}

// Messages and questions are modal windows.
bool frmOrvantisVRXSplashScreen::isMessage(const QObject *watched) const
{
    const auto window = qobject_cast<const QWidget *>(watched);
    return window && window != this && window->isWindow() && window->isModal();
}
