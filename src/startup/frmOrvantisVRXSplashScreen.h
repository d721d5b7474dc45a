#pragma once

#include "startup/FormWindow.h"

#include <memory>

namespace Ui {
class frmOrvantisVRXSplashScreen;
}

/// The splash picture with name, version and notices. It stays on top without taking the focus and
/// closes at a click, at Escape, and when a message box opens, which it must not cover.
class frmOrvantisVRXSplashScreen final : public FormWindow
{
    Q_OBJECT

public:
    explicit frmOrvantisVRXSplashScreen(Program &program);
    ~frmOrvantisVRXSplashScreen() override;

protected:
    void mouseReleaseEvent(QMouseEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void Form_Load() override;
    void Form_Click();
    void Image1_Click();

    void loadLabels();
    void placeOnTop();
    [[nodiscard]] bool isMessage(const QObject *watched) const;

    std::unique_ptr<Ui::frmOrvantisVRXSplashScreen> ui;
};
