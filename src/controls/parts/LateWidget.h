#pragma once

#include <QWidget>

/// A part of a window whose content is made when it is first shown, or when a member needs it: an
/// author who opens a project waits for what is seen, and no longer. None stands inside another.
class LateWidget : public QWidget
{
public:
    using QWidget::QWidget;

    void setVisible(bool visible) override;

protected:
    /// Makes the content unless it is there. The Tab key reaches it where this widget stands, and
    /// its splitters are remembered with those of the window.
    void makeContent();
    [[nodiscard]] bool hasContent() const { return m_hasContent; }

private:
    virtual void layOut() = 0;
    void moveContentInTabOrder();

    bool m_hasContent = false;
};
